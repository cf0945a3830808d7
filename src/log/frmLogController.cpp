#include "log/frmLogController.h"

#include "data/TabLayout.h"
#include "garage/ProgramFolders.h"
#include "log/LogExport.h"
#include "log/LogFormat.h"
#include "session/MainScreen.h"
#include "session/Session.h"

#include <QCloseEvent>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QSlider>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace kvx::log {

namespace {

QToolButton* iconButton(QWidget* parent, const char* name, QStyle::StandardPixmap icon, const QString& tip)
{
    auto* button = new QToolButton(parent);
    button->setObjectName(name);
    button->setIcon(parent->style()->standardIcon(icon));
    button->setIconSize(QSize(32, 32));
    button->setAutoRaise(true);
    button->setToolTip(tip);
    return button;
}

QSlider* slider(QWidget* parent, const char* name, int maximum, int value)
{
    auto* s = new QSlider(Qt::Horizontal, parent);
    s->setObjectName(name);
    s->setRange(0, maximum);
    s->setValue(value);
    return s;
}

QLabel* label(QWidget* parent, const char* name)
{
    auto* l = new QLabel(parent);
    l->setObjectName(name);
    return l;
}

} // namespace

frmLogController::frmLogController(Session& session, std::unique_ptr<ReplayStopwatch> stopwatch,
                                   FrameHandlers handlers, LiveDecoding decoding, QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::WindowStaysOnTopHint),
      session_(session),
      stopwatch_(std::move(stopwatch)),
      decoding_(std::move(decoding)),
      controller_(session, *stopwatch_, std::move(handlers))
{
    setObjectName("frmLogController");
    setWindowTitle("LOG CONTROLLER");

    imgOpen_ = iconButton(this, "imgOpen", QStyle::SP_DialogOpenButton, "Open a log");
    imgPlay_ = iconButton(this, "imgPlay", QStyle::SP_MediaPlay, "Play");
    imgStop_ = iconButton(this, "imgStop", QStyle::SP_MediaStop, "Stop");
    imgRewind_ = iconButton(this, "imgRewind", QStyle::SP_MediaSkipBackward, "Back to the start");
    sldLogFrame_ = slider(this, "sldLogFrame", 0, 0);
    sldSpeed_ = slider(this, "sldSpeed", LogController::kMaxSpeedMs, LogController::kDefaultSpeedMs);
    sldSpeed_->setPageStep(50);
    lblFrame_ = label(this, "lblFrame");
    lblSpeed_ = label(this, "lblSpeed");
    lblFile_ = label(this, "lblFile");
    lblTframes_ = label(this, "lblTframes");
    cmdExportCsv_ = new QPushButton(QStringLiteral("Export CSV…"), this);
    cmdExportCsv_->setObjectName("cmdExportCsv");

    auto* buttons = new QHBoxLayout;
    for (auto* b : {imgOpen_, imgPlay_, imgStop_, imgRewind_})
        buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(cmdExportCsv_);
    auto* sliders = new QGridLayout;
    sliders->addWidget(new QLabel("Frame", this), 0, 0);
    sliders->addWidget(sldLogFrame_, 0, 1);
    sliders->addWidget(lblFrame_, 0, 2);
    sliders->addWidget(new QLabel("Delay (ms)", this), 1, 0);
    sliders->addWidget(sldSpeed_, 1, 1);
    sliders->addWidget(lblSpeed_, 1, 2);
    sliders->setColumnMinimumWidth(2, 48);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(buttons);
    layout->addLayout(sliders);
    layout->addWidget(lblFile_);
    layout->addWidget(lblTframes_);
    resize(420, 200);

    chooseFile_ = [this] {
        return QFileDialog::getOpenFileName(this, "LOG DATA", logFolder(), "Log Data (*.log);;All files (*.*)");
    };
    chooseExport_ = [this] {
        QString suggested = QString::fromStdString(controller_.path());
        suggested.replace(QRegularExpression("\\.log$", QRegularExpression::CaseInsensitiveOption), ".csv");
        return QFileDialog::getSaveFileName(this, "Export CSV", suggested, "CSV (*.csv);;All files (*.*)");
    };

    connect(imgOpen_, &QToolButton::clicked, this, &frmLogController::imgOpen_Click);
    connect(imgPlay_, &QToolButton::clicked, this, &frmLogController::imgPlay_Click);
    connect(imgStop_, &QToolButton::clicked, this, &frmLogController::imgStop_Click);
    connect(imgRewind_, &QToolButton::clicked, this, &frmLogController::imgRewind_Click);
    connect(cmdExportCsv_, &QPushButton::clicked, this, &frmLogController::exportCsv);
    connect(sldLogFrame_, &QSlider::valueChanged, &controller_, &LogController::setPosition);
    connect(sldSpeed_, &QSlider::valueChanged, &controller_, &LogController::setSpeed);
    connect(&controller_, &LogController::changed, this, &frmLogController::render);

    controller_.setSpeed(sldSpeed_->value());
    controller_.formLoad();
    render();
}

frmLogController::~frmLogController() = default;

QString frmLogController::logFolder() const
{
    return garage::runFolders().log;
}

void frmLogController::render()
{
    sldLogFrame_->setMaximum(controller_.maximum());
    sldLogFrame_->setValue(controller_.position());
    sldSpeed_->setValue(controller_.speed());
    lblFrame_->setText(QString::number(sldLogFrame_->value()));
    lblSpeed_->setText(QString::number(sldSpeed_->value()));
    lblFile_->setText(QString::fromStdString(controller_.fileLabel()));
    lblFile_->setToolTip(QString::fromStdString(controller_.fileToolTip()));
    lblTframes_->setText(QString::fromStdString(controller_.totalFramesLabel()));
    cmdExportCsv_->setEnabled(controller_.isOpen());
}

void frmLogController::imgOpen_Click()
{
    // Logs are opened only while no vehicle is connected, so live data cannot mix with replayed.
    if (!session_.LinkDown)
        return;
    controller_.stop();
    const QString path = chooseFile_();
    if (path.isEmpty()) {
        controller_.closeFile();
        return;
    }
    if (!controller_.open(path.toStdString()))
        return;
    // The main window shows the tabs of the module that recorded the log, not those of the last
    // session.
    for (int module = ModuleGeneric; module <= ModuleToyota; ++module) {
        if (LogNamesFor(module).header == session_.LogHeader) {
            data::ClearTabs(session_.screen);
            data::BuildTabs(session_.screen, data::ModuleTabs(module));
            break;
        }
    }
}

void frmLogController::imgPlay_Click()
{
    controller_.play();
}

void frmLogController::imgStop_Click()
{
    controller_.stop();
}

void frmLogController::imgRewind_Click()
{
    controller_.rewind();
}

void frmLogController::exportCsv()
{
    if (!controller_.isOpen())
        return;
    const QString target = chooseExport_();
    if (target.isEmpty())
        return;
    try {
        const ExportResult result = ExportLogFile(controller_.path(), decoding_, ExportFormat::Csv, target.toStdString());
        if (!result.damage.empty())
            QMessageBox::warning(this, "Export CSV",
                                 QString("%1 frames exported; the rest could not be read: %2")
                                     .arg(result.frames)
                                     .arg(QString::fromStdString(result.damage)));
    } catch (const LogError& e) {
        QMessageBox::warning(this, "Export CSV", e.what());
    }
}

void frmLogController::closeEvent(QCloseEvent* event)
{
    if (controller_.queryUnload())
        event->accept();
    else
        event->ignore();
}

} // namespace kvx::log
