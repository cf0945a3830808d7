#include "ui/DarkPalette.h"

namespace kvx::ui {

QPalette DarkPalette()
{
    const QColor ground(0x2A, 0x2A, 0x2E);
    const QColor field(0x1E, 0x1E, 0x22);
    const QColor text(0xE6, 0xE6, 0xE6);
    QPalette dark;
    dark.setColor(QPalette::Window, ground);
    dark.setColor(QPalette::Button, ground);
    dark.setColor(QPalette::Base, field);
    dark.setColor(QPalette::AlternateBase, ground);
    dark.setColor(QPalette::ToolTipBase, field);
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        dark.setColor(role, text);
    dark.setColor(QPalette::BrightText, Qt::white);
    dark.setColor(QPalette::Highlight, QColor(0x3A, 0x6E, 0xA5));
    dark.setColor(QPalette::HighlightedText, Qt::white);
    dark.setColor(QPalette::PlaceholderText, QColor(0x90, 0x90, 0x90));
    for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        dark.setColor(QPalette::Disabled, role, QColor(0x80, 0x80, 0x80));
    return dark;
}

} // namespace kvx::ui
