#pragma once

#include "settings/SettingsEditor.h"

#include <QDialog>

class QComboBox;
class QGridLayout;
class QLineEdit;

namespace kvx::settings {

// The settings dialog: renders a SettingsEditor and hands it every edit and button.
class frmSetting : public QDialog {
    Q_OBJECT
public:
    frmSetting(SettingsEditor& editor, QWidget* parent = nullptr);

private:
    QLineEdit* addField(QGridLayout* grid, TextModel& field, const char* name, const char* caption,
                        const char* tip, int row);
    QComboBox* addList(ListModel& list, const char* name, QWidget* parent);

    SettingsEditor& editor_;
};

} // namespace kvx::settings
