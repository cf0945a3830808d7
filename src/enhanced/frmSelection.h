#pragma once

#include <QDialog>
#include <array>
#include <functional>

class QPushButton;

namespace kvx {
class MainScreen;
}

namespace kvx::enhanced {

// The module choice: Command1(0..3). A button rebuilds the main window's tabs for its module and
// runs the module's connection; success closes the window, failure leaves it open for another try
// with no tabs behind it.
class frmSelection : public QDialog {
    Q_OBJECT
public:
    // Sets ModuleIndex and runs that module's connection routine; true when connected.
    using ConnectModule = std::function<bool(int module)>;

    frmSelection(MainScreen& screen, ConnectModule connect, QWidget* parent = nullptr);
    void Command1_Click(int index);
    void reject() override;

private:
    void enableButtons(bool on);

    MainScreen& screen_;
    ConnectModule connect_;
    std::array<QPushButton*, 4> buttons_{};
    int lastTried_ = -1;
};

} // namespace kvx::enhanced
