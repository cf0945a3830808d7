#include "settings/frmSetting.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QVBoxLayout>

namespace kvx::settings {

namespace {

const QStringList kProtocols = {QStringLiteral("ISO9141 Slow"), QStringLiteral("KW2000 Slow"),
                                QStringLiteral("KW2000 Fast"), QStringLiteral("Try All")};

// The integer a text starts with; empty or non-numeric text is 0, as the fields are not validated.
int leadingNumber(const QString& text)
{
    static const QRegularExpression number(QStringLiteral("^\\s*[-+]?\\d+"));
    const QRegularExpressionMatch m = number.match(text);
    return m.hasMatch() ? m.captured(0).trimmed().toInt() : 0;
}

} // namespace

frmSetting::frmSetting(CommSettings& settings, QSettings& store, std::function<void(const CommSettings&)> applied,
                       QWidget* parent)
    : QDialog(parent), settings_(settings), store_(store), applied_(std::move(applied))
{
    setObjectName(QStringLiteral("frmSetting"));
    setWindowTitle(tr("Settings"));

    auto* top = new QVBoxLayout(this);
    auto* interfaceBox = new QGroupBox(QStringLiteral("INTERFACE TYPE:"), this);
    cmbInterface_ = new QComboBox(interfaceBox);
    cmbInterface_->setObjectName(QStringLiteral("cmbInterface"));
    (new QVBoxLayout(interfaceBox))->addWidget(cmbInterface_);
    top->addWidget(interfaceBox);

    auto* protocolBox = new QGroupBox(QStringLiteral("PROTOCOL (GENERIC ONLY):"), this);
    cmbTypeProtocol_ = new QComboBox(protocolBox);
    cmbTypeProtocol_->setObjectName(QStringLiteral("cmbTypeProtocol"));
    (new QVBoxLayout(protocolBox))->addWidget(cmbTypeProtocol_);
    top->addWidget(protocolBox);

    auto* fields = new QGridLayout;
    fields->setHorizontalSpacing(12);
    top->addLayout(fields);
    fields->addWidget(new QLabel(QStringLiteral("Com Port:"), this), 0, 0);
    cmbPort_ = new QComboBox(this);
    cmbPort_->setObjectName(QStringLiteral("cmbPort"));
    fields->addWidget(cmbPort_, 0, 1);

    txtBaud_ = addField(QStringLiteral("txtBaud"), QStringLiteral("Baud:"), {}, 1);
    txtKeepAlive_ = addField(QStringLiteral("txtKeepAlive"), QStringLiteral("Keep Alive (mS):"),
                             QStringLiteral("Keeps the Module Com Alive and Preventing Reinitialization"), 2);
    txtP4_ = addField(QStringLiteral("txtP4"), QStringLiteral("P4 Delay (mS):"),
                      QStringLiteral("Time Delay Between KW2 and KW2 Complement"), 3);
    txtKwp2000InitDelay_ = addField(QStringLiteral("txtKwp2000InitDelay"), QStringLiteral("KWP2000 Init (mS):"),
                                    QStringLiteral("Delay Initialization Before Start Communication Command"), 4);
    txtInterbyte_ = addField(QStringLiteral("txtInterbyte"), QStringLiteral("InterByte Delay (mS):"),
                             QStringLiteral("Delay Between Bytes That are Being Transmitted"), 5);
    txtP3_ = addField(QStringLiteral("txtP3"), QStringLiteral("P3 Delay (mS):"),
                      QStringLiteral("Delay After Requesting"), 6);

    auto* buttons = new QHBoxLayout;
    top->addLayout(buttons);
    auto button = [&](const char* name, const char* caption) {
        auto* b = new QPushButton(QString::fromLatin1(caption), this);
        b->setObjectName(QString::fromLatin1(name));
        b->setAutoDefault(false);
        buttons->addWidget(b);
        return b;
    };
    cmdDefault_ = button("cmdDefault", "DEFAULT");
    cmdApply_ = button("cmdApply", "APPLY");
    cmdClose_ = button("cmdClose", "CLOSE");
    connect(cmdDefault_, &QPushButton::clicked, this, &frmSetting::cmdDefault_Click);
    connect(cmdApply_, &QPushButton::clicked, this, &frmSetting::cmdApply_Click);
    connect(cmdClose_, &QPushButton::clicked, this, &QDialog::reject);

    for (QComboBox* combo : {cmbInterface_, cmbTypeProtocol_, cmbPort_})
        connect(combo, &QComboBox::currentIndexChanged, this, &frmSetting::edited);
    for (QLineEdit* edit : {txtBaud_, txtKeepAlive_, txtP4_, txtKwp2000InitDelay_, txtInterbyte_})
        connect(edit, &QLineEdit::textChanged, this, &frmSetting::edited);
    connect(txtP3_, &QLineEdit::textChanged, this, &frmSetting::txtP3_Change);

    Form_Load();
}

QLineEdit* frmSetting::addField(const QString& name, const QString& caption, const QString& tip, int row)
{
    auto* grid = static_cast<QGridLayout*>(layout()->itemAt(2)->layout());
    auto* label = new QLabel(caption, this);
    auto* edit = new QLineEdit(QStringLiteral("N/A"), this);
    edit->setObjectName(name);
    edit->setToolTip(tip);
    label->setToolTip(tip);
    grid->addWidget(label, row, 0);
    grid->addWidget(edit, row, 1);
    return edit;
}

void frmSetting::Form_Load()
{
    for (int port = 1; port <= 16; ++port)
        cmbPort_->addItem(QString::number(port), port);
    // The virtual vehicle is offered beside the serial ports, for trying the program without a car.
    cmbPort_->addItem(tr("Virtual vehicle"), kVirtualVehiclePort);
    cmbInterface_->addItem(QStringLiteral("OptoCoupler/Tactrix/KKL"));
    cmbInterface_->setCurrentIndex(0);
    cmbTypeProtocol_->addItems(kProtocols);
    cmbTypeProtocol_->setCurrentIndex(settings_.TryAllProtocols ? 3 : settings_.ProtocolNumber - 1);

    cmbPort_->setCurrentIndex(cmbPort_->findData(settings_.PortNumber));
    txtBaud_->setText(QString::number(settings_.BaudRate));
    txtKeepAlive_->setText(QString::number(settings_.KeepAlive));
    txtP4_->setText(QString::number(settings_.P4Delay));
    txtInterbyte_->setText(QString::number(settings_.InterByteDelay));
    txtKwp2000InitDelay_->setText(QString::fromStdString(settings_.Kwp2000InitDelay));
    txtP3_->setText(QString::number(settings_.P3Delay));
    cmdApply_->setEnabled(false);
}

void frmSetting::edited() { cmdApply_->setEnabled(true); }

void frmSetting::txtP3_Change()
{
    cmdApply_->setEnabled(true);
    if (leadingNumber(txtP3_->text()) > 500)
        txtP3_->setText(QStringLiteral("500"));
}

void frmSetting::cmdApply_Click()
{
    const QVariant port = cmbPort_->currentData();
    settings_.PortNumber = port.isValid() ? port.toInt() : leadingNumber(cmbPort_->currentText());
    settings_.KeepAlive = leadingNumber(txtKeepAlive_->text());
    settings_.BaudRate = leadingNumber(txtBaud_->text());
    settings_.P4Delay = leadingNumber(txtP4_->text());
    settings_.InterByteDelay = leadingNumber(txtInterbyte_->text());
    settings_.Kwp2000InitDelay = txtKwp2000InitDelay_->text().toStdString();
    settings_.P3Delay = leadingNumber(txtP3_->text());
    const int protocol = int(kProtocols.indexOf(cmbTypeProtocol_->currentText()));
    if (protocol >= 0) {
        settings_.ProtocolNumber = protocol + 1;
        settings_.TryAllProtocols = protocol == 3;
    }
    if (applied_)
        applied_(settings_);

    auto save = [this](const char* key, const QString& value) {
        store_.setValue(QStringLiteral("Settings/") + QLatin1String(key), value);
    };
    save("BaudRate", QString::number(settings_.BaudRate));
    save("Port", QString::number(settings_.PortNumber));
    save("KeepAlive", QString::number(settings_.KeepAlive));
    save("P4Delay", QString::number(settings_.P4Delay));
    save("InterByteDelay", QString::number(settings_.InterByteDelay));
    save("TypeProtocol", QString::number(settings_.ProtocolNumber));
    save("Kwp2000InitDelay", QString::fromStdString(settings_.Kwp2000InitDelay));
    save("P3Delay", QString::number(settings_.P3Delay));
    store_.sync();
    cmdApply_->setEnabled(false);
}

void frmSetting::cmdDefault_Click()
{
    txtBaud_->setText(QStringLiteral("10400"));
    txtKeepAlive_->setText(QStringLiteral("700"));
    txtP4_->setText(QStringLiteral("25"));
    txtKwp2000InitDelay_->setText(QStringLiteral("22"));
    txtInterbyte_->setText(QStringLiteral("5"));
    cmbTypeProtocol_->setCurrentIndex(3);
    cmdApply_->setEnabled(true);
    txtP3_->setText(QStringLiteral("275"));
    cmdApply_Click();
}

} // namespace kvx::settings
