#pragma once

#include "session/Shell.h"

class QWidget;

namespace kvx::ui {

// The window's Shell: message boxes with the given title, text and icon, and Qt's event loop.
class QtShell : public Shell {
public:
    explicit QtShell(QWidget* parent = nullptr) : parent_(parent) {}
    void setParent(QWidget* parent) { parent_ = parent; }
    void messageBox(const std::string& title, const std::string& text, MessageIcon icon) override;
    void processEvents() override;

private:
    QWidget* parent_;
};

} // namespace kvx::ui
