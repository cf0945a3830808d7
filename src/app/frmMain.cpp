#include "app/frmMain.h"
#include "app/frmMainWidgets.h"

#include "ui/Bindings.h"

#include <QAction>
#include <QCloseEvent>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>
#include <QToolBar>

namespace kvx::app {

frmMain::frmMain(MainScreen& screen, MainActions actions, QWidget* parent)
    : QWidget(parent), screen_(screen), actions_(std::move(actions))
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("Korvenatronix OBD-II"));
    resize(kMainWidth, kMainHeight);

    toolbar_ = new QToolBar(this);
    toolbar_->setObjectName(QStringLiteral("Toolbar1"));
    toolbar_->setToolButtonStyle(Qt::ToolButtonTextOnly);
    toolbar_->setGeometry(0, 0, kMainWidth, 40);
    for (const char* key : {"Connect", "Disconnect", "Log Controller", "Setting", "About", "Exit"}) {
        QAction* action = toolbar_->addAction(QString::fromLatin1(key));
        action->setObjectName(QString::fromLatin1(key));
        action->setData(QString::fromLatin1(key));
        ControlState& state = screen_.control(key);
        auto show = [action, &state] { action->setEnabled(state.enabled()); };
        show();
        connect(&state, &ControlState::changed, action, show);
    }
    screen_.control("Log Controller").setEnabled(false);
    connect(toolbar_, &QToolBar::actionTriggered, this,
            [this](QAction* action) { toolbarClick(action->data().toString()); });

    tabs_ = new QTabBar(this);
    tabs_->setObjectName(QStringLiteral("TabStrip1"));
    tabs_->setGeometry(8, 48, kMainWidth - 16, 28);
    tabs_->setExpanding(false);
    tag(tabs_, "ZQXRESIZEYYYXY");
    connect(&screen_.TabStrip1, &TabStripModel::changed, this, &frmMain::showTabs);
    connect(&screen_.TabStrip1, &TabStripModel::selectionChanged, this, &frmMain::showSelectedPanel);
    connect(tabs_, &QTabBar::currentChanged, this, [this](int index) { screen_.TabStrip1.select(index); });

    buildFrames();
    buildBottomRow();

    status_ = new QStatusBar(this);
    status_->setObjectName(QStringLiteral("StatusBar1"));
    status_->setSizeGripEnabled(false);
    status_->setGeometry(0, kMainHeight - 28, kMainWidth, 28);
    tag(status_, "ZQXRESIZEYYYXY");
    ui::bindStatusBar(screen_.StatusBar1, status_);

    tmrKeepAlive_ = new QTimer(this);
    tmrKeepAlive_->setObjectName(QStringLiteral("tmrKeepAlive"));
    tmrKeepAliveEnhance_ = new QTimer(this);
    tmrKeepAliveEnhance_->setObjectName(QStringLiteral("tmrKeepAliveEnhance"));
    tmrTracker_ = new QTimer(this);
    tmrTracker_->setObjectName(QStringLiteral("tmrTracker"));
    ui::bindTimer(screen_.tmrKeepAlive, tmrKeepAlive_);
    ui::bindTimer(screen_.tmrKeepAliveEnhance, tmrKeepAliveEnhance_);
    ui::bindTimer(screen_.tmrTracker, tmrTracker_);
    connect(tmrKeepAlive_, &QTimer::timeout, this, [this] {
        if (actions_.KeepAliveTick)
            actions_.KeepAliveTick();
    });
    connect(tmrKeepAliveEnhance_, &QTimer::timeout, this, [this] {
        if (actions_.KeepAliveEnhanceTick)
            actions_.KeepAliveEnhanceTick();
    });
    connect(tmrTracker_, &QTimer::timeout, this, &frmMain::trackPort);
    screen_.tmrTracker.setInterval(1000);
    screen_.tmrTracker.setEnabled(true);

    showTabs();
    resizer_.KeepRatio = true;
    resizer_.FontResize = true;
    resizer_.InitializeResizer(this);
    resizer_.FormResized(this);
}


void frmMain::showTabs()
{
    const QSignalBlocker block(tabs_);
    while (tabs_->count() > 0)
        tabs_->removeTab(0);
    for (const TabStripModel::Tab& tab : screen_.TabStrip1.tabs()) {
        const int i = tabs_->addTab(QString::fromStdString(tab.caption));
        tabs_->setTabToolTip(i, QString::fromStdString(tab.toolTip));
    }
    tabs_->setCurrentIndex(screen_.TabStrip1.selected());
    showSelectedPanel();
}

void frmMain::showSelectedPanel()
{
    const auto& tabs = screen_.TabStrip1.tabs();
    const int selected = screen_.TabStrip1.selected();
    const QString panel = selected >= 0 && selected < int(tabs.size())
                              ? QString::fromStdString(tabs[std::size_t(selected)].panel)
                              : QString();
    // A panel shows when the session lets it and its tab is the selected one.
    for (QWidget* frame : frames_)
        frame->setVisible(frame->objectName() == panel &&
                          screen_.control(frame->objectName().toStdString()).visible());
    if (tabs_->currentIndex() != selected) {
        const QSignalBlocker block(tabs_);
        tabs_->setCurrentIndex(selected);
    }
}

void frmMain::trackPort()
{
    const bool open = actions_.IsPortOpen && actions_.IsPortOpen();
    screen_.StatusBar1.setLamp(2, open ? Lamp::Green : Lamp::Black);
}

void frmMain::toolbarClick(const QString& key)
{
    if (key == QLatin1String("Connect")) {
        if (actions_.IsPortOpen && actions_.IsPortOpen())
            return;
        if (actions_.PrepareConnect)
            actions_.PrepareConnect();
        emit connectRequested();
    } else if (key == QLatin1String("Disconnect")) {
        if (actions_.Disconnect)
            actions_.Disconnect();
    } else if (key == QLatin1String("Log Controller")) {
        showLogController();
    } else if (key == QLatin1String("Setting")) {
        emit settingRequested();
    } else if (key == QLatin1String("About")) {
        emit aboutRequested();
    } else if (key == QLatin1String("Exit")) {
        close();
    }
}

void frmMain::setLogControllerFactory(std::function<QWidget*(QWidget* parent)> factory)
{
    makeLogController_ = std::move(factory);
    screen_.control("Log Controller").setEnabled(bool(makeLogController_));
}

void frmMain::showLogController()
{
    if (!makeLogController_)
        return;
    // One player at a time: a second click brings the open one forward.
    if (!logController_) {
        logController_ = makeLogController_(this);
        logController_->setAttribute(Qt::WA_DeleteOnClose);
    }
    logController_->show();
    logController_->raise();
    logController_->activateWindow();
}

void frmMain::closeEvent(QCloseEvent* event)
{
    if (actions_.QueryClose && !actions_.QueryClose()) {
        event->ignore();
        return;
    }
    // The player is a window of its own and would otherwise keep the program running.
    if (logController_)
        logController_->close();
    event->accept();
}

void frmMain::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    resizer_.FormResized(this);
}

} // namespace kvx::app
