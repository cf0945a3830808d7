// The seven service panels and the controls below them.
#include "app/frmMain.h"
#include "app/frmMainWidgets.h"

#include "data/VehicleLists.h"
#include "ui/Bindings.h"
#include "ui/GridTableModel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QAction>
#include <QFrame>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QTableView>
#include <QTextEdit>

namespace kvx::app {

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

void frmMain::clickLiveRow(const QModelIndex& index)
{
    if (index.isValid() && actions_.GridMode1Click)
        actions_.GridMode1Click(ui::GridTableModel::gridRow(index.row()), index.column());
}

// Space on the live grid's current row does what a click on it does.
bool frmMain::liveGridKey(QObject* watched, QEvent* event)
{
    auto* grid = qobject_cast<QTableView*>(watched);
    if (!grid || grid->objectName() != QLatin1String("GridMode1") || event->type() != QEvent::KeyPress ||
        static_cast<QKeyEvent*>(event)->key() != Qt::Key_Space)
        return false;
    clickLiveRow(grid->currentIndex());
    return true;
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
    connect(grid1, &QTableView::clicked, this, [this](const QModelIndex& index) { clickLiveRow(index); });
    grid1->installEventFilter(this);
    // Ticking rows one by one to keep a few is tedious: the heading ticks or unticks them all.
    connect(grid1->horizontalHeader(), &QHeaderView::sectionClicked, this, [this] {
        if (actions_.GridMode1HeaderClick)
            actions_.GridMode1HeaderClick();
    });
    grid1->setContextMenuPolicy(Qt::ActionsContextMenu);
    for (const auto& [caption, ticked] : {std::pair{"Tick all rows", true}, std::pair{"Untick all rows", false}}) {
        auto* action = new QAction(tr(caption), grid1);
        action->setObjectName(ticked ? QStringLiteral("actTickAll") : QStringLiteral("actUntickAll"));
        connect(action, &QAction::triggered, this, [this, ticked = ticked] {
            if (actions_.TickAllRows)
                actions_.TickAllRows(ticked);
        });
        grid1->addAction(action);
    }
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
    const int y = kMainHeight - 72;
    auto* module = new QComboBox(this);
    module->setObjectName(QStringLiteral("cmbModule"));
    module->setGeometry(kMainWidth - 200, 7, 90, 26);
    module->setToolTip(tr("Units that answered"));
    ui::bindCombo(screen_.cmbModule, module);
    ui::bindControl(screen_.control("cmbModule"), module);
    tag(module, "ZQXRESIZEXXXXX");

    QPushButton* go = addButton(this, "cmdGo", tr("GO"), QRect(kMainWidth - 100, 5, 90, 30), whenOpen(actions_, actions_.Go));
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
    log->setGeometry(kMainWidth - 130, y + 6, 120, 24);
    ui::bindControl(screen_.control("chkLog"), log);
    connect(log, &QCheckBox::toggled, this, [this](bool on) {
        screen_.control("chkLog").setChecked(on);
        if (actions_.LogToggled)
            actions_.LogToggled(on);
    });
}

} // namespace kvx::app
