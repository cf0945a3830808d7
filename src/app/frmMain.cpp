#include "app/frmMain.h"

#include "data/VehicleLists.h"
#include "ui/Bindings.h"
#include "ui/GridTableModel.h"

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFontDatabase>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QStatusBar>
#include <QTabBar>
#include <QTableView>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>

namespace kvx::app {

namespace {

constexpr int kWidth = 920;
constexpr int kHeight = 640;
const QRect kFrameRect(8, 76, kWidth - 16, kHeight - 76 - 80);

void tag(QWidget* w, const char* text) { w->setProperty("Tag", QString::fromLatin1(text)); }

QTableView* makeGrid(QWidget* parent, const char* name, GridModel& model, QRect geometry)
{
    auto* view = new QTableView(parent);
    view->setObjectName(QString::fromLatin1(name));
    view->setModel(new ui::GridTableModel(model, view));
    view->setItemDelegate(new ui::MarkerDelegate(view));
    view->horizontalHeader()->hide();
    view->verticalHeader()->hide();
    view->verticalHeader()->setDefaultSectionSize(22);
    view->horizontalHeader()->setStretchLastSection(true);
    view->setSelectionMode(QAbstractItemView::NoSelection);
    view->setGeometry(geometry);
    return view;
}

// The last column takes the rest of the width.
void setColumnWidths(QTableView* view, std::initializer_list<int> widths)
{
    int column = 0;
    for (int width : widths)
        view->setColumnWidth(column++, width);
}

QTextEdit* makeRichText(QWidget* parent, const char* name, RichTextModel& model, QRect geometry)
{
    auto* edit = new QTextEdit(parent);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setGeometry(geometry);
    ui::bindRichText(model, edit);
    return edit;
}

QComboBox* makeCombo(QWidget* parent, const QString& name, ListModel& model, QRect geometry)
{
    auto* combo = new QComboBox(parent);
    combo->setObjectName(name);
    combo->setGeometry(geometry);
    ui::bindCombo(model, combo);
    return combo;
}

QFont fixedPitch()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSize(10);
    return font;
}

QLabel* makeLabel(QWidget* parent, const QString& name, const QString& text, QRect geometry)
{
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setGeometry(geometry);
    return label;
}

} // namespace

frmMain::frmMain(MainScreen& screen, MainActions actions, QWidget* parent)
    : QWidget(parent), screen_(screen), actions_(std::move(actions))
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("Korvenatronix OBD-II"));
    resize(kWidth, kHeight);

    toolbar_ = new QToolBar(this);
    toolbar_->setObjectName(QStringLiteral("Toolbar1"));
    toolbar_->setToolButtonStyle(Qt::ToolButtonTextOnly);
    toolbar_->setGeometry(0, 0, kWidth, 40);
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
    tabs_->setGeometry(8, 48, kWidth - 16, 28);
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
    status_->setGeometry(0, kHeight - 28, kWidth, 28);
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

QPushButton* frmMain::addButton(QWidget* parent, const QString& name, const QString& caption, QRect geometry,
                                const std::function<void()>& action)
{
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    button->setGeometry(geometry);
    if (action) {
        connect(button, &QPushButton::clicked, this, action);
        // Enabled while the session says the service can run.
        ui::bindControl(screen_.control(name.toStdString()), button);
    } else {
        button->setEnabled(false);
    }
    return button;
}

// A service action only runs while the port is open, as every mode button does.
static std::function<void()> whenOpen(const MainActions& a, const std::function<void()>& f)
{
    if (!f)
        return {};
    return [isOpen = a.IsPortOpen, f] {
        if (isOpen && isOpen())
            f();
    };
}

QWidget* frmMain::buildFrame(int number)
{
    auto* frame = new QFrame(this);
    frame->setObjectName(QStringLiteral("Frame%1").arg(number));
    frame->setFrameShape(QFrame::StyledPanel);
    frame->setGeometry(kFrameRect);
    frame->hide();
    frames_[std::size_t(number - 1)] = frame;
    connect(&screen_.control(frame->objectName().toStdString()), &ControlState::changed, this,
            &frmMain::showSelectedPanel);
    return frame;
}

void frmMain::buildFrames()
{
    const MainActions& a = actions_;
    const int w = kFrameRect.width();
    const int h = kFrameRect.height();
    const int gridH = h - 52;
    const int rowY = h - 40;

    QWidget* f1 = buildFrame(1);
    QTableView* grid1 = makeGrid(f1, "GridMode1", screen_.GridMode1, QRect(8, 8, w - 16, gridH));
    grid1->setColumnWidth(0, 34);
    grid1->setColumnWidth(1, 50);
    grid1->setColumnWidth(2, 330);
    grid1->setColumnWidth(3, 230);
    connect(grid1, &QTableView::clicked, this, [this](const QModelIndex& index) {
        if (actions_.GridMode1Click)
            actions_.GridMode1Click(index.row(), index.column());
    });
    addButton(f1, "cmdRequestMode1", tr("START"), QRect(8, rowY, 110, 30), whenOpen(a, a.RequestMode1));
    addButton(f1, "cmdStop", tr("STOP"), QRect(126, rowY, 110, 30), a.Stop);

    QWidget* f2 = buildFrame(2);
    makeRichText(f2, "txtMode2", screen_.txtMode2, QRect(8, 8, w - 16, gridH))->setFont(fixedPitch());
    makeLabel(f2, "lblFrameNumber", tr("Frame:"), QRect(8, rowY + 6, 50, 20));
    QComboBox* frame = makeCombo(f2, "cmbFrame", screen_.cmbFrame, QRect(60, rowY + 3, 70, 26));
    frame->setEditable(true);
    frame->setToolTip(tr("Freeze frame number, sent as typed"));
    // The frame number goes out as typed, so the text is taken just before the read.
    std::function<void()> readFrame;
    if (a.RequestMode2)
        readFrame = [this, frame] {
            screen_.cmbFrame.setText(frame->currentText().toStdString());
            actions_.RequestMode2();
        };
    addButton(f2, "cmdRequestMode2", tr("READ FREEZE FRAME"), QRect(140, rowY, 170, 30), whenOpen(a, readFrame));

    QWidget* f3 = buildFrame(3);
    makeRichText(f3, "txtMode347", screen_.txtMode347, QRect(8, 8, w - 16, gridH));
    addButton(f3, "cmdMode3", tr("READ CODES"), QRect(8, rowY, 140, 30), whenOpen(a, a.Mode3));
    addButton(f3, "cmdMode7", tr("PENDING CODES"), QRect(156, rowY, 140, 30), whenOpen(a, a.Mode7));
    addButton(f3, "cmdMode4", tr("CLEAR CODES"), QRect(304, rowY, 140, 30), whenOpen(a, a.Mode4))
        ->setToolTip(tr("Clears the stored codes and freeze frame and turns the check-engine lamp off"));

    QWidget* f4 = buildFrame(4);
    QTableView* grid5 = makeGrid(f4, "gridMode5", screen_.gridMode5, QRect(8, 8, w - 16, gridH));
    setColumnWidths(grid5, {50, 400, 140, 140});
    makeLabel(f4, "lblSensor", tr("Sensor:"), QRect(8, rowY + 6, 56, 20));
    makeCombo(f4, "cmbMode5", screen_.cmbMode5, QRect(66, rowY + 3, 160, 26));
    addButton(f4, "cmdRequestMode5", tr("READ O2 TESTS"), QRect(236, rowY, 150, 30), whenOpen(a, a.RequestMode5));

    QWidget* f5 = buildFrame(5);
    QTableView* grid6 = makeGrid(f5, "gridMode6", screen_.gridMode6, QRect(8, 8, w - 16, gridH));
    setColumnWidths(grid6, {50, 50, 330, 110, 100, 110});
    makeLabel(f5, "lblYear", tr("Year:"), QRect(8, rowY + 6, 40, 20));
    QComboBox* year = makeCombo(f5, "cmbYear", screen_.cmbYear, QRect(50, rowY + 3, 100, 26));
    makeLabel(f5, "lblMake", tr("Make:"), QRect(162, rowY + 6, 44, 20));
    makeCombo(f5, "cmbMake", screen_.cmbMake, QRect(208, rowY + 3, 120, 26))
        ->setToolTip(tr("Test descriptions differ between makes; none are shown without one"));
    // The make list follows the chosen year.
    connect(year, &QComboBox::activated, this, [this](int) { data::FillMakeList(screen_); });
    addButton(f5, "cmdRequestMode6", tr("READ MONITOR TESTS"), QRect(340, rowY, 180, 30), whenOpen(a, a.RequestMode6));

    QWidget* f6 = buildFrame(6);
    makeRichText(f6, "txtInfo", screen_.txtInfo, QRect(8, 8, w - 16, gridH));
    // Button 2 of the group asks for nothing, so it is not shown.
    const std::array<std::pair<int, const char*>, 4> infoButtons{{
        {0, "OBD STANDARD"}, {1, "MONITOR STATUS"}, {3, "O2 SENSORS (2 BANKS)"}, {4, "O2 SENSORS (4 BANKS)"}}};
    int x = 8;
    for (const auto& [index, caption] : infoButtons) {
        std::function<void()> once;
        if (a.ModeOnce)
            once = [this, i = index] { actions_.ModeOnce(i); };
        addButton(f6, "cmdModeOnce", tr(caption), QRect(x, rowY, 170, 30), whenOpen(a, once))->setProperty("Index", index);
        x += 178;
    }
    addButton(f6, "cmdReadVin", tr("VIN"), QRect(x, rowY, 100, 30), whenOpen(a, a.ReadVin))
        ->setToolTip(tr("Vehicle identification number"));

    QWidget* f7 = buildFrame(7);
    // Some readings run to a sentence (monitor status, fuel system status): the value boxes
    // take two lines rather than cut them.
    auto valueBox = [this, f7](const char* name, int i, QRect geometry, TextModel& model) {
        QLabel* box = makeLabel(f7, QString::fromLatin1(name), {}, geometry);
        box->setProperty("Index", i);
        box->setFrameShape(QFrame::StyledPanel);
        box->setWordWrap(true);
        QFont big = box->font();
        big.setPointSize(big.pointSize() + 4);
        big.setBold(true);
        box->setFont(big);
        ui::bindLabel(model, box);
    };
    for (int i = 0; i < 5; ++i) {
        const int y = 8 + i * 66;
        makeCombo(f7, QStringLiteral("cmbPid"), screen_.cmbPid[std::size_t(i)], QRect(8, y + 15, 300, 26))
            ->setProperty("Index", i);
        valueBox("lblPid", i, QRect(318, y, 280, 56), screen_.lblPid[std::size_t(i)]);
        valueBox("lblPida", i, QRect(606, y, 280, 56), screen_.lblPida[std::size_t(i)]);
    }
    addButton(f7, "cmdRequestLiveCombo", tr("START"), QRect(8, rowY, 110, 30), whenOpen(a, a.RequestLiveCombo));
    addButton(f7, "cmdStopLiveCombo", tr("STOP"), QRect(126, rowY, 110, 30), a.StopLiveCombo);
}

void frmMain::buildBottomRow()
{
    const int y = kHeight - 72;
    auto* module = new QComboBox(this);
    module->setObjectName(QStringLiteral("cmbModule"));
    module->setGeometry(kWidth - 200, 7, 90, 26);
    module->setToolTip(tr("Units that answered"));
    ui::bindCombo(screen_.cmbModule, module);
    ui::bindControl(screen_.control("cmbModule"), module);
    tag(module, "ZQXRESIZEXXXXX");

    QPushButton* go = addButton(this, "cmdGo", tr("GO"), QRect(kWidth - 100, 5, 90, 30), whenOpen(actions_, actions_.Go));
    go->setToolTip(tr("Ask the unit again which parameters it supports"));
    tag(go, "ZQXRESIZEXXXXX");

    QLabel* caption = makeLabel(this, "Label1", QStringLiteral("P3 DELAY (mS)"), QRect(12, y + 8, 130, 20));
    tag(caption, "ZQXRESIZEYY0YY");
    slider_ = new QSlider(Qt::Horizontal, this);
    slider_->setObjectName(QStringLiteral("sldSpeedP3"));
    slider_->setGeometry(144, y + 6, 380, 24);
    ui::bindSlider(screen_.sldSpeedP3, slider_);
    QLabel* speed = makeLabel(this, "lblSpeed", {}, QRect(534, y + 8, 70, 20));
    tag(speed, "ZQXRESIZEYY0YY");
    ui::bindLabel(screen_.lblSpeed, speed);
    connect(slider_, &QSlider::valueChanged, this, [this](int value) {
        if (actions_.SliderMoved)
            actions_.SliderMoved(value);
    });

    auto* log = new QCheckBox(tr("LOG DATA"), this);
    log->setObjectName(QStringLiteral("chkLog"));
    log->setGeometry(kWidth - 130, y + 6, 120, 24);
    ui::bindControl(screen_.control("chkLog"), log);
    connect(log, &QCheckBox::toggled, this, [this](bool on) {
        screen_.control("chkLog").setChecked(on);
        if (actions_.LogToggled)
            actions_.LogToggled(on);
    });
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
