#pragma once

#include <QDialog>
#include <array>
#include <functional>

class QPushButton;

namespace kvx::enhanced {

// The module choice: Command1(0..3). A button runs the connection of its module through the
// owner's function and closes the window on success; a failure leaves the window open.
class frmSelection : public QDialog {
    Q_OBJECT
public:
    struct Hooks {
        std::function<void(const std::string&)> status;   // panel 1 of the main status bar
        std::function<void()> clearMain;                  // no tabs, no panels
        std::function<void(const std::array<bool, 7>&)> buildTabs;
        std::function<bool(int module)> connect;          // empty for modules not available yet
        std::array<bool, 4> available{true, false, false, false};
    };

    explicit frmSelection(Hooks hooks, QWidget* parent = nullptr);
    void Command1_Click(int index);

private:
    Hooks hooks_;
    std::array<QPushButton*, 4> buttons_{};
};

} // namespace kvx::enhanced
