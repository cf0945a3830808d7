#include "settings/frmSetting.h"

#include "ui/Bindings.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kvx::settings {

frmSetting::frmSetting(SettingsEditor& editor, QWidget* parent) : QDialog(parent), editor_(editor)
{
    setObjectName(QStringLiteral("frmSetting"));
    setWindowTitle(tr("Settings"));
    editor_.Form_Load();

    auto* top = new QVBoxLayout(this);
    top->setSpacing(10);
    top->setContentsMargins(18, 16, 18, 16);
    setMinimumWidth(400);
    auto* interfaceBox = new QGroupBox(QStringLiteral("INTERFACE TYPE:"), this);
    (new QVBoxLayout(interfaceBox))->addWidget(addList(editor_.cmbInterface, "cmbInterface", interfaceBox));
    top->addWidget(interfaceBox);
    auto* protocolBox = new QGroupBox(QStringLiteral("PROTOCOL (GENERIC ONLY):"), this);
    (new QVBoxLayout(protocolBox))->addWidget(addList(editor_.cmbTypeProtocol, "cmbTypeProtocol", protocolBox));
    top->addWidget(protocolBox);

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(12);
    grid->setColumnStretch(1, 1);
    top->addLayout(grid);
    grid->addWidget(new QLabel(QStringLiteral("Com Port:"), this), 0, 0);
    auto* ports = new QHBoxLayout;
    ports->addWidget(addList(editor_.cmbPort, "cmbPort", this), 1);
    QComboBox* vehicles = addList(editor_.cmbVehicle, "cmbVehicle", this);
    vehicles->setToolTip(QStringLiteral("The car on the Virtual Vehicle port"));
    ui::bindControl(editor_.cmbVehicleState, vehicles);
    ports->addWidget(vehicles, 2);
    grid->addLayout(ports, 0, 1);
    addField(grid, editor_.txtBaud, "txtBaud", "Baud:", "", 1);
    addField(grid, editor_.txtKeepAlive, "txtKeepAlive", "Keep Alive (mS):",
             "Keeps the Module Com Alive and Preventing Reinitialization", 2);
    addField(grid, editor_.txtP4, "txtP4", "P4 Delay (mS):", "Time Delay Between KW2 and KW2 Complement", 3);
    addField(grid, editor_.txtKwp2000InitDelay, "txtKwp2000InitDelay", "KWP2000 Init (mS):",
             "Delay Initialization Before Start Communication Command", 4);
    addField(grid, editor_.txtInterbyte, "txtInterbyte", "InterByte Delay (mS):",
             "Delay Between Bytes That are Being Transmitted", 5);
    addField(grid, editor_.txtP3, "txtP3", "P3 Delay (mS):", "Delay After Requesting", 6);
    grid->addWidget(new QLabel(QStringLiteral("Adapter Baud:"), this), 7, 0);
    QComboBox* adapterBaud = addList(editor_.cmbAdapterBaud, "cmbAdapterBaud", this);
    adapterBaud->setToolTip(QStringLiteral("The ELM327's serial rate; Auto-detect tries 38400, 9600, 115200 and 500000"));
    grid->addWidget(adapterBaud, 7, 1);

    auto* buttons = new QHBoxLayout;
    top->addLayout(buttons);
    auto button = [&](const char* name, const char* caption) {
        auto* b = new QPushButton(QString::fromLatin1(caption), this);
        b->setObjectName(QString::fromLatin1(name));
        b->setAutoDefault(false);
        buttons->addWidget(b);
        return b;
    };
    QPushButton* defaults = button("cmdDefault", "DEFAULT");
    QPushButton* apply = button("cmdApply", "APPLY");
    QPushButton* closeButton = button("cmdClose", "CLOSE");
    ui::bindControl(editor_.cmdApply, apply);
    connect(defaults, &QPushButton::clicked, this, [this] { editor_.cmdDefault_Click(); });
    connect(apply, &QPushButton::clicked, this, [this] { editor_.cmdApply_Click(); });
    connect(closeButton, &QPushButton::clicked, this, &QDialog::reject);
    connect(this, &QDialog::rejected, this, [this] { editor_.cmdClose_Click(); });
}

QLineEdit* frmSetting::addField(QGridLayout* grid, TextModel& field, const char* name, const char* caption,
                                const char* tip, int row)
{
    auto* label = new QLabel(QString::fromLatin1(caption), this);
    auto* edit = new QLineEdit(this);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setToolTip(QString::fromLatin1(tip));
    label->setToolTip(QString::fromLatin1(tip));
    grid->addWidget(label, row, 0);
    grid->addWidget(edit, row, 1);
    auto show = [&field, edit] {
        const QString text = QString::fromStdString(field.text());
        if (edit->text() != text)
            edit->setText(text);
    };
    show();
    connect(&field, &TextModel::changed, edit, show);
    connect(edit, &QLineEdit::textEdited, this,
            [this, &field](const QString& text) { editor_.edit(field, text.toStdString()); });
    return edit;
}

QComboBox* frmSetting::addList(ListModel& list, const char* name, QWidget* parent)
{
    auto* combo = new QComboBox(parent);
    combo->setObjectName(QString::fromLatin1(name));
    // Show the model, but route the user's choice through the editor so Apply lights up.
    auto show = [&list, combo] {
        const QSignalBlocker block(combo);
        combo->clear();
        for (const std::string& item : list.items())
            combo->addItem(QString::fromStdString(item));
        combo->setCurrentIndex(list.currentIndex());
    };
    show();
    connect(&list, &ListModel::changed, combo, show);
    connect(combo, &QComboBox::activated, this, [this, &list](int index) { editor_.choose(list, index); });
    return combo;
}

} // namespace kvx::settings
