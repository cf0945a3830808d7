#include "ui/QtShell.h"

#include <QCoreApplication>
#include <QMessageBox>

namespace kvx::ui {

void QtShell::messageBox(const std::string& title, const std::string& text, MessageIcon icon)
{
    QMessageBox::Icon qicon = QMessageBox::Information;
    if (icon == MessageIcon::Exclamation)
        qicon = QMessageBox::Warning;
    else if (icon == MessageIcon::Critical)
        qicon = QMessageBox::Critical;
    QMessageBox box(qicon, QString::fromStdString(title), QString::fromStdString(text), QMessageBox::Ok, parent_);
    box.exec();
}

void QtShell::processEvents() { QCoreApplication::processEvents(QEventLoop::AllEvents); }

} // namespace kvx::ui
