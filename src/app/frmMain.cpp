#include "app/frmMain.h"
#include "app/frmGraph.h"
#include "app/frmMainWidgets.h"
#include "log/frmLogController.h"

#include "ui/Bindings.h"

#include <algorithm>

#include <QAction>
#include <QCloseEvent>
#include <QScreen>
#include <QLabel>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>
#include <QToolBar>

namespace kvx::app {

namespace {
const QString kTitle = QStringLiteral("Korvenatronix OBD-II");
}

frmMain::frmMain(MainScreen& screen, MainActions actions, QWidget* parent)
    : QWidget(parent), screen_(screen), actions_(std::move(actions))
{
    setObjectName(QStringLiteral("frmMain"));
    // A simulated car is named in the title, where the eye is, as well as in the status bar.
    auto title = [this] {
        const std::string& banner = screen_.lblVirtualVehicle.text();
        setWindowTitle(banner.empty() ? kTitle : kTitle + QStringLiteral(" - ") + QString::fromStdString(banner));
    };
    title();
    connect(&screen_.lblVirtualVehicle, &TextModel::changed, this, title);
    resize(kMainWidth, kMainHeight);

    toolbar_ = new QToolBar(this);
    toolbar_->setObjectName(QStringLiteral("Toolbar1"));
    toolbar_->setToolButtonStyle(Qt::ToolButtonTextOnly);
    toolbar_->setGeometry(0, 0, kMainWidth, 40);
    for (const char* key : {"Connect", "Disconnect", "Log Controller", "Setting", "About", "Exit", "Graph"}) {
        QAction* action = toolbar_->addAction(QString::fromLatin1(key));
        action->setObjectName(QString::fromLatin1(key));
        action->setData(QString::fromLatin1(key));
        ControlState& state = screen_.control(key);
        auto show = [action, &state] { action->setEnabled(state.enabled()); };
        show();
        connect(&state, &ControlState::changed, action, show);
    }
    screen_.control("Log Controller").setEnabled(false);
    screen_.control("Graph").setEnabled(false);
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
    auto* simulated = new QLabel(status_);
    simulated->setObjectName(QStringLiteral("lblVirtualVehicle"));
    simulated->setAlignment(Qt::AlignCenter);
    simulated->setStyleSheet(QStringLiteral("QLabel { background: #f0c000; color: black; font-weight: bold; "
                                            "padding: 0 8px; }"));
    status_->insertWidget(0, simulated);
    auto showSimulated = [this, simulated] {
        simulated->setText(QString::fromStdString(screen_.lblVirtualVehicle.text()));
        simulated->setVisible(!screen_.lblVirtualVehicle.text().empty());
    };
    showSimulated();
    connect(&screen_.lblVirtualVehicle, &TextModel::changed, simulated, showSimulated);

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
        if (actions_.SettingsClosed)
            actions_.SettingsClosed();
    } else if (key == QLatin1String("About")) {
        emit aboutRequested();
    } else if (key == QLatin1String("Exit")) {
        close();
    } else if (key == QLatin1String("Graph")) {
        showGraph();
    }
}

void frmMain::setLogControllerFactory(std::function<QWidget*(QWidget* parent)> factory)
{
    makeLogController_ = std::move(factory);
    screen_.control("Log Controller").setEnabled(bool(makeLogController_));
}

void frmMain::setGraphFactory(std::function<QWidget*(QWidget* parent)> factory)
{
    makeGraph_ = std::move(factory);
    screen_.control("Graph").setEnabled(bool(makeGraph_));
}

// One graph window; it follows the player whichever of the two opened first.
void frmMain::showGraph()
{
    if (!makeGraph_)
        return;
    if (!graph_) {
        graph_ = makeGraph_(this);
        graph_->setAttribute(Qt::WA_DeleteOnClose);
        followPlayer();
    }
    graph_->show();
    graph_->raise();
    graph_->activateWindow();
}

void frmMain::followPlayer()
{
    auto* graph = qobject_cast<frmGraph*>(graph_);
    auto* player = qobject_cast<log::frmLogController*>(logController_);
    if (graph && player)
        graph->followPlayer(player->controller());
}

void frmMain::showLogController()
{
    if (!makeLogController_)
        return;
    // One player at a time: a second click brings the open one forward.
    if (!logController_) {
        logController_ = makeLogController_(this);
        logController_->setAttribute(Qt::WA_DeleteOnClose);
        logController_->installEventFilter(this);
        placeLogController();
        followPlayer();
    }
    logController_->show();
    logController_->raise();
    logController_->activateWindow();
}

// The player stays on top, so it must not hide the status bar, where the replay shows its state
// and the close check its refusal: it goes where the user last put it, else beside this window,
// else over the top of it with its lower edge above the status bar.
void frmMain::placeLogController()
{
    QWidget* player = logController_;
    player->adjustSize();
    const QRect avail = screen()->availableGeometry();
    if (playerPos_ && avail.contains(QRect(*playerPos_, player->size()))) {
        player->move(*playerPos_);
        return;
    }
    const QRect main = frameGeometry();
    const QSize frame = main.size() - geometry().size();
    const QSize size = player->size() + frame;
    constexpr int gap = 8;
    for (const QPoint& at : {QPoint(main.right() + 1 + gap, main.top()), QPoint(main.left() - gap - size.width(), main.top()),
                             QPoint(main.left(), main.bottom() + 1 + gap)}) {
        if (avail.contains(QRect(at, size))) {
            player->move(at);
            return;
        }
    }
    const int statusTop = status_->mapToGlobal(QPoint(0, 0)).y();
    const int x = std::clamp(main.right() - size.width() - gap, avail.left(), std::max(avail.left(), avail.right() - size.width()));
    const int y = std::clamp(statusTop - gap - size.height(), avail.top(), std::max(avail.top(), avail.bottom() - size.height()));
    player->move(x, y);
}

bool frmMain::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == logController_ && (event->type() == QEvent::Move || event->type() == QEvent::Close))
        playerPos_ = logController_->pos();
    return liveGridKey(watched, event) || QWidget::eventFilter(watched, event);
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
