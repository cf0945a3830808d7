#pragma once

#include "settings/CommSettings.h"

#include <QDialog>
#include <functional>

class QComboBox;
class QLineEdit;
class QPushButton;
class QSettings;

namespace kvx::settings {

// The settings dialog. Apply takes the fields into CommSettings, saves them under "Settings" and
// tells the owner (which pushes the delays into the link and the timers); CLOSE discards edits.
class frmSetting : public QDialog {
    Q_OBJECT
public:
    frmSetting(CommSettings& settings, QSettings& store, std::function<void(const CommSettings&)> applied,
               QWidget* parent = nullptr);

    void cmdApply_Click();
    void cmdDefault_Click();

private:
    QLineEdit* addField(const QString& name, const QString& caption, const QString& tip, int row);
    void Form_Load();
    void edited();
    void txtP3_Change();

    CommSettings& settings_;
    QSettings& store_;
    std::function<void(const CommSettings&)> applied_;

    QComboBox* cmbInterface_ = nullptr;
    QComboBox* cmbTypeProtocol_ = nullptr;
    QComboBox* cmbPort_ = nullptr;
    QLineEdit *txtBaud_ = nullptr, *txtKeepAlive_ = nullptr, *txtP4_ = nullptr, *txtKwp2000InitDelay_ = nullptr,
              *txtInterbyte_ = nullptr, *txtP3_ = nullptr;
    QPushButton *cmdDefault_ = nullptr, *cmdApply_ = nullptr, *cmdClose_ = nullptr;
};

} // namespace kvx::settings
