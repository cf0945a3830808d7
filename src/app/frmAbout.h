#pragma once

#include <QDialog>

namespace kvx::app {

// Shows the program's name and version.
class frmAbout : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(QWidget* parent = nullptr);
};

} // namespace kvx::app
