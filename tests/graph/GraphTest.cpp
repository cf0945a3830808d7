#include "app/frmGraph.h"
#include "log/LogFile.h"
#include "log/LogExport.h"
#include "log/LogFormat.h"
#include "log/LogGraph.h"
#include "session/GraphModel.h"
#include "session/ValueText.h"
#include "support/LogFiles.h"
#include "support/ProgramWindow.h"
#include "support/Watchdog.h"
#include "ui/GraphChart.h"

#include "ui/GraphLayout.h"

#include <QCheckBox>
#include <QListWidget>
#include <QComboBox>
#include <QImage>
#include <QPointer>
#include <QProcess>
#include <cmath>
#include <sstream>
#include <gtest/gtest.h>

namespace kvx {
namespace {

using Ids = std::vector<std::string>;

TEST(GraphModel, PlotsTheFirstFourTickedNumericItemsUnlessThePickSaysOtherwise)
{
    GraphModel graph;
    graph.offer("01", "Monitor status", true, "MIL OFF", "MIL OFF", 0);
    graph.offer("05", "Coolant", false, "90 °C", "194 °F", 0);
    for (const char* id : {"0C", "0D", "0F", "10", "11"})
        graph.offer(id, id, true, "1 x", "2 y", 0);
    EXPECT_EQ(graph.plotted(), (Ids{"0C", "0D", "0F", "10"}));
    EXPECT_EQ(graph.items().size(), 7u);
    EXPECT_FALSE(graph.items()[0].numeric);

    // The user's pick holds at most eight, in the order picked; an item not seen yet joins when
    // its first value comes, and a pick outlives a new run.
    graph.setPlotted({"11", "05", "0C", "01", "A1", "A2", "A3", "A4", "A5", "A6"});
    EXPECT_EQ(graph.plotted(), (Ids{"11", "05", "0C"}));
    graph.clear();
    graph.offer("A1", "Later", false, "3 V", "3 V", 1);
    graph.offer("0C", "Engine speed", true, "800 rpm", "800 rpm", 1);
    EXPECT_EQ(graph.plotted(), (Ids{"A1", "0C"}));
    EXPECT_EQ(graph.series("0C")->unit(false), "rpm");

    // A US cell without a number plots the metric one, with its unit.
    GraphModel oxygen;
    oxygen.offer("14", "O2 voltage / fuel trim Bank 1 Sensor 1", true, "0.100 V", "trim 0.0 %", 0);
    ASSERT_NE(oxygen.series("14"), nullptr);
    EXPECT_EQ(oxygen.series("14")->unit(true), "V");
    EXPECT_FLOAT_EQ(oxygen.series("14")->last().us, 0.1f);
}

TEST(GraphModel, DrawingKeepsEveryPeakInFewPointsAndSwitchesAsStepsAndSavesWhatIsPlotted)
{
    GraphModel graph(200000);
    for (int i = 0; i < 100000; ++i)
        graph.offer("0C", "Engine speed", true, std::to_string(i == 54321 ? 7000 : 800 + i % 7) + " rpm", "1 rpm", i * 0.01);
    const auto points = graph.series("0C")->drawPoints(0, 1000, 400, false);
    EXPECT_LE(points.size(), 802u);
    EXPECT_DOUBLE_EQ(std::max_element(points.begin(), points.end(), [](auto& a, auto& b) { return a.y() < b.y(); })->y(), 7000);

    GraphModel switches;
    for (int i = 0; i < 6; ++i)
        switches.offer("1302 7", "Idle switch", true, i < 3 ? "OFF" : "ON", "", i);
    const auto steps = switches.series("1302 7")->drawPoints(0, 10, 100, true);
    ASSERT_EQ(steps.size(), 4u);
    EXPECT_EQ(steps[1], QPointF(3, 0));
    EXPECT_EQ(steps[2], QPointF(3, 1));
    EXPECT_EQ(steps[3], QPointF(5, 1));

    GraphModel two;
    two.offer("0C", "Engine speed", true, "800 rpm", "800 rpm", 0.5);
    two.offer("0D", "Vehicle speed, km", true, "50 km/h", "31 mph", 0.75);
    two.setUs(true);
    EXPECT_EQ(two.csv(), "Time (s),Engine speed (rpm),\"Vehicle speed, km (mph)\"\r\n0.500,800,\r\n0.750,,31\r\n");
}

// A source faster than the capacity foresaw (a CAN adapter polling one item): the series still
// holds the last 30 minutes, at less detail in its older part, and never more than its capacity.
TEST(GraphModel, AFastSourceKeepsThirtyMinutesWithinTheBoundAndFollowsASourceThatGoesBack)
{
    // Thirty minutes of eight items at 20 samples a second fit the real bound.
    EXPECT_GE(GraphModel::kPointsPerSeries, 30u * 60u * 20u);
    GraphModel graph(1000);
    const int rate = 100;
    for (int i = 0; i < 40 * 60 * rate; ++i)
        graph.offer("0C", "Engine speed", true, std::to_string(i == 25 * 60 * rate ? 7000 : 800 + i % 5) + " rpm",
                    "1 rpm", static_cast<double>(i) / rate);
    EXPECT_LE(graph.pointCount(), 1000u);
    EXPECT_GT(graph.pointCount(), 500u);
    EXPECT_GE(graph.lastTime() - graph.firstTime(), GraphModel::kKeptSeconds);
    EXPECT_LT(graph.lastTime() - graph.firstTime(), 2 * GraphModel::kKeptSeconds);
    const GraphSeries& s = *graph.series("0C");
    float highest = 0;
    for (std::size_t i = 0; i < s.size(); ++i)
        highest = std::max(highest, s.at(i).metric);
    EXPECT_EQ(highest, 7000) << "a peak survives the thinning";

    // A rewound replay: what lay after the new time is replaced, never drawn backwards.
    graph.offer("0C", "Engine speed", true, "5 rpm", "1 rpm", 1790);
    EXPECT_DOUBLE_EQ(s.last().t, 1790);
    EXPECT_FLOAT_EQ(s.last().metric, 5);
    EXPECT_LT(s.at(s.size() - 2).t, 1790);
}

// A sample that falls on a bucket's edge as the floating point rounds it (here at 20 samples a
// second, the last minute of 30 on 375 buckets) still moves the drawing on: it once went round
// for ever, filling memory, and the window with it.
TEST(GraphModel, DrawingEndsWhereverTheSamplesFallOnTheBuckets)
{
    GraphModel graph(200000);
    for (int i = 0; i <= 30 * 60 * 20 + 20; ++i)
        graph.offer("0C", "Engine speed", true, std::to_string(800 + i % 250) + " rpm", "1 rpm", i / 20.0);
    for (int buckets : {100, 375, 400, 512})
        for (double from : {1740.0, 1740.05, 1700.0, 0.0}) {
            const auto points = graph.series("0C")->drawPoints(from, from + 60, buckets, false);
            EXPECT_LE(points.size(), 2u * static_cast<std::size_t>(buckets) + 4) << from << " " << buckets;
        }
}

// A value text is one number and perhaps a unit, or it is no value: read alike for the export's
// columns and the graph's samples.
TEST(ValueText, ANumberAndAUnitOrNothing)
{
    EXPECT_EQ(SplitValue("1726 rpm").value, "1726");
    EXPECT_EQ(SplitValue("1726 rpm").unit, "rpm");
    EXPECT_EQ(SplitValue("-40 °C").unit, "°C");
    EXPECT_EQ(SplitValue("0.450").unit, "");
    for (const char* whole : {"ratio 0.450", "12 km/h, 4 km/h", "1. V", "1  V", "1 ", ".5 V", "-", "", "1,5 \"km/h\"",
                              "MIL OFF"}) {
        EXPECT_EQ(SplitValue(whole).value, whole);
        EXPECT_EQ(SplitValue(whole).unit, "");
        EXPECT_FALSE(PlotValueOf(whole)) << whole;
    }
    EXPECT_DOUBLE_EQ(PlotValueOf("-12.75 g/s")->value, -12.75);
    EXPECT_EQ(PlotValueOf("-12.75 g/s")->unit, "g/s");
    EXPECT_FALSE(PlotValueOf("-12.75 g/s")->isSwitch);
    EXPECT_TRUE(PlotValueOf("ON")->isSwitch);
    EXPECT_DOUBLE_EQ(PlotValueOf("OFF")->value, 0);
}

// A log whose first frames are too long to carry a time, then frames with times: the early ones
// go at the first time, not at their frame numbers on a seconds axis.
TEST(LogGraph, FramesWithoutTimesInALogWithTimesStayOnItsSecondsAxis)
{
    QTemporaryDir dir;
    const std::string path = dir.filePath("mixed.log").toStdString();
    // A generic frame padded past the room of the time tail: it carries no time.
    std::vector<std::string> frames{"486B10410D14" + std::string(log::kMaxTimedText - 11, '0')};
    std::vector<long> times{9999};
    for (long k = 1; k < 50; ++k) {
        frames.push_back("486B10410D1400");
        times.push_back(5000 + k * 100);
    }
    test::writeLog(path, log::kGenericHeader, "9", frames, "-", times);
    GraphModel graph;
    const log::LogGraphResult read = log::LoadLogIntoGraph(path, log::StandardLiveDecoding(), graph);
    EXPECT_TRUE(read.timed);
    EXPECT_EQ(read.frames, 50);
    ASSERT_EQ(graph.plotted(), Ids{"0D"});
    EXPECT_DOUBLE_EQ(graph.firstTime(), 5.1);
    EXPECT_DOUBLE_EQ(graph.lastTime(), 9.9);
}

// Readable at any size the window takes: scales on round numbers whose five marks read their
// values (a switch's OFF and ON), a key above the plot with every name whole and none over
// another, time labels that never touch, whatever the range; and each item painted in its colour.
TEST(GraphChart, ScalesKeyAndTimeAxisStayReadableAtAnySize)
{
    test::widgetApp();
    GraphModel graph;
    const char* names[] = {"Calculated engine load", "Engine coolant temperature", "Engine speed", "Vehicle speed",
                           "Intake air temperature", "Air flow rate", "Absolute throttle position",
                           "Timing advance"};
    graph.setPlotted({"10", "11", "12", "13", "14", "15", "16", "17"});
    for (int i = 0; i < 60; ++i) {
        for (int k = 0; k < 7; ++k)
            graph.offer(std::to_string(10 + k), names[k], true, std::to_string(19.1 + k * 100 + (i % 7) * 0.23) + " %",
                        "1 y", i * 0.5);
        graph.offer("17", names[7], true, i % 9 < 4 ? "ON" : "OFF", "", i * 0.5);
    }
    ui::GraphChart chart(graph);
    const QFontMetricsF metrics(chart.font());
    for (const QSize size : {QSize(1200, 600), QSize(300, 500)}) {
        chart.resize(size);
        chart.showAll();
        const ui::GraphPicture& picture = chart.picture();
        const ui::GraphGeometry& g = chart.geometry();
        ASSERT_EQ(picture.lines.size(), 8u);
        for (const ui::GraphLine& line : picture.lines) {
            const auto& marks = line.scale.marks;
            if (line.name == names[7]) {
                ASSERT_EQ(marks.size(), 2u);
                EXPECT_EQ(marks[0].text + marks[1].text, "OFFON");
                continue;
            }
            ASSERT_EQ(marks.size(), 5u);
            const double step = marks[1].value - marks[0].value;
            const double f = step / std::pow(10.0, std::floor(std::log10(step)));
            EXPECT_TRUE(std::abs(f - 1) < 1e-6 || std::abs(f - 2) < 1e-6 || std::abs(f - 2.5) < 1e-6 ||
                        std::abs(f - 5) < 1e-6)
                << "a step of " << step;
            for (std::size_t i = 0; i < marks.size(); ++i) {
                EXPECT_NEAR(marks[i].value, marks[0].value + static_cast<double>(i) * step, step * 1e-6);
                EXPECT_NEAR(marks[i].text.toDouble(), marks[i].value, step * 1e-6) << marks[i].text.toStdString();
            }
            EXPECT_NEAR(std::remainder(marks[0].value, step), 0, step * 1e-6);
            for (const QPointF& point : line.points)
                EXPECT_TRUE(point.y() >= line.scale.low && point.y() <= line.scale.high) << point.y();
        }
        for (std::size_t a = 0; a < g.key.entries.size(); ++a) {
            const QRectF box = g.key.entries[a].name;
            const QRectF needed = metrics.boundingRect(box, ui::kKeyTextFlags, picture.lines[a].name);
            EXPECT_TRUE(g.sheet.contains(box) && needed.width() <= box.width() + 0.5 &&
                        needed.height() <= box.height() + 0.5)
                << picture.lines[a].name.toStdString() << " is cut at " << size.width();
            for (std::size_t b = a + 1; b < g.key.entries.size(); ++b)
                EXPECT_FALSE(box.intersects(g.key.entries[b].name)) << a << " and " << b;
        }
        EXPECT_LT(g.key.bottom, g.plot.top()) << "the key stands above the plot";
        ui::GraphPicture ranges = picture;
        for (double to : {1.5, 29.5, 1800.0, 100000.0}) {
            ranges.to = to;
            const auto marks = ui::layOutGraph(ranges, size, chart.font()).timeMarks;
            ASSERT_GE(marks.size(), 2u) << to;
            for (std::size_t i = 1; i < marks.size(); ++i) {
                const double gap = (marks[i].value - marks[i - 1].value) / (to - ranges.from) * g.plot.width();
                EXPECT_GT(gap, (metrics.horizontalAdvance(marks[i].text) + metrics.horizontalAdvance(marks[i - 1].text)) / 2)
                    << "time labels touch at " << size.width() << " for " << to;
            }
        }
    }
    const QImage image = chart.grab().toImage();
    for (const ui::GraphLine& line : chart.picture().lines) {
        bool painted = false;
        for (int y = 0; y < image.height() && !painted; ++y)
            for (int x = 0; x < image.width() && !painted; ++x)
                painted = image.pixel(x, y) == line.colour.rgb();
        EXPECT_TRUE(painted) << line.name.toStdString();
    }
}

// Paused, the view keeps the samples it shows while more arrive, zoom included; resumed, it
// follows the newest again.
TEST(GraphChart, APausedViewStaysPutUntilResumed)
{
    test::widgetApp();
    GraphModel graph;
    for (int i = 0; i <= 200; ++i)
        graph.offer("0C", "Engine speed", true, std::to_string(800 + i) + " rpm", "1 rpm", i);
    ui::GraphChart chart(graph);
    chart.resize(800, 400);
    chart.show();
    chart.redraw();
    EXPECT_DOUBLE_EQ(chart.viewEnd(), 200);
    chart.hold();
    for (int i = 201; i <= 300; ++i)
        graph.offer("0C", "Engine speed", true, std::to_string(800 + i) + " rpm", "1 rpm", i);
    chart.redraw();
    chart.zoomBy(0.5);
    chart.follow();
    EXPECT_DOUBLE_EQ(chart.viewEnd(), 185) << "zoomed about the middle of the held view";
    chart.release();
    EXPECT_TRUE(chart.following());
    EXPECT_DOUBLE_EQ(chart.viewEnd(), 300);
}

struct GraphProgram : test::ProgramWindow {
    app::frmGraph* graph()
    {
        toolbar("Graph");
        return window->findChild<app::frmGraph*>();
    }

    // Passes of live data recorded as the user records them, finished by the disconnect; the
    // log's path.
    QString recordLiveData(int passes)
    {
        if (!actions.ConnectModule(ModuleGeneric))
            return {};
        QTest::mouseClick(find<QCheckBox>("chkLog"), Qt::LeftButton);
        runFor("cmdRequestMode1", "cmdStop", passes * screen.GridMode1.rows());
        toolbar("Disconnect");
        const QStringList logs = QDir(logFolder()).entryList({"*.log"});
        return logs.size() == 1 ? QDir(logFolder()).filePath(logs[0]) : QString();
    }

    // The player from the toolbar, with `path` opened through its Open button.
    log::frmLogController* openInPlayer(const QString& path)
    {
        toolbar("Log Controller");
        auto* player = window->findChild<log::frmLogController*>();
        player->setFileChooser([path] { return path; });
        player->imgOpen_Click();
        return player;
    }
};

// Live data on the virtual vehicle, with the window opened from the toolbar: the ticked rows'
// values are plotted over the session's clock, in either unit system, and saved as picture and CSV.
TEST(GraphWindow, PlotsLiveDataSavesPictureAndDataAndPairsTheTwoTextsOfOneReading)
{
    test::Watchdog watchdog("graph live");
    GraphProgram p;
    const std::size_t boxes = p.shell.boxes.size();
    ASSERT_TRUE(p.actions.ConnectModule(ModuleGeneric));
    app::frmGraph* graph = p.graph();
    ASSERT_NE(graph, nullptr);
    EXPECT_EQ(graph->windowTitle(), "Graph");
    p.runFor("cmdRequestMode1", "cmdStop", 4 * p.screen.GridMode1.rows());
    const GraphModel& model = graph->model();
    ASSERT_EQ(model.plotted().size(), GraphModel::kDefaultSeries);
    const GraphSeries& first = *model.series(model.plotted()[0]);
    ASSERT_GE(first.size(), 3u);
    EXPECT_GT(first.last().t, first.at(0).t) << "virtual seconds pass between polls";

    graph->findChild<QComboBox*>("cmbUnits")->setCurrentIndex(1);
    EXPECT_TRUE(model.us());
    const QString png = QDir(p.folder.path()).filePath("g.png"), csv = QDir(p.folder.path()).filePath("g.csv");
    graph->setPictureChooser([&] { return png; });
    graph->setDataChooser([&] { return csv; });
    p.click(graph->findChild<QPushButton*>("cmdSavePicture"));
    p.click(graph->findChild<QPushButton*>("cmdSaveData"));
    EXPECT_FALSE(QImage(png).isNull());
    QFile saved(csv);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    const QByteArray data = saved.readAll();
    EXPECT_TRUE(data.startsWith("Time (s),")) << data.left(80).toStdString();
    EXPECT_GE(data.count('\n'), 4);
    EXPECT_EQ(p.shell.boxes.size(), boxes) << "saving raised no box";

    // A disconnect blanks the grid: every sample pairs the grid's metric text with the US text of
    // the same reading, so each item has its US unit and the metric line never takes a US value
    // (coolant in °F, speed in mph) at the blanking.
    std::map<std::string, std::pair<std::string, std::string>> shown;
    for (int row = 1; row < p.screen.GridMode1.rows(); ++row)
        shown[p.screen.GridMode1.text(row, 1)] = {p.screen.GridMode1.text(row, 3), p.screen.GridMode1.text(row, 4)};
    p.toolbar("Disconnect");
    for (const std::string& id : model.plotted()) {
        const GraphSeries& series = *model.series(id);
        EXPECT_EQ(series.unit(false), SplitValue(shown[id].first).unit) << id;
        EXPECT_EQ(series.unit(true), SplitValue(shown[id].second).unit) << id;
        ASSERT_FALSE(series.empty());
        EXPECT_FLOAT_EQ(series.last().metric, static_cast<float>(PlotValueOf(shown[id].first)->value)) << id;
        EXPECT_FLOAT_EQ(series.last().us, static_cast<float>(PlotValueOf(shown[id].second)->value)) << id;
        for (std::size_t i = 1; i < series.size(); ++i)
            EXPECT_GT(series.at(i).t, series.at(i - 1).t) << id << ": one sample per reading";
    }
}

// Opened from the toolbar half-way through a pass: the list keeps the grid's order and the first
// four ticked numeric rows of the grid are plotted, not the four the polling reached next.
TEST(GraphWindow, OpenedWhilePollingFollowsTheGridsOrderAndAnEmptyPickStaysEmpty)
{
    test::Watchdog watchdog("graph opened while polling");
    GraphProgram p;
    ASSERT_TRUE(p.actions.ConnectModule(ModuleGeneric));
    const GridModel& grid = p.screen.GridMode1;
    app::frmGraph* graph = nullptr;
    int pumps = 0;
    p.shell.onProcessEvents = [&] {
        if (++pumps == grid.rows() / 2)
            graph = p.graph();
        if (pumps == 2 * grid.rows())
            p.click("cmdStop");
    };
    p.click("cmdRequestMode1");
    p.shell.onProcessEvents = nullptr;
    ASSERT_NE(graph, nullptr);
    Ids rows, numeric;
    for (int row = 1; row < grid.rows(); ++row) {
        rows.push_back(grid.text(row, 1));
        if (numeric.size() < GraphModel::kDefaultSeries && PlotValueOf(grid.text(row, 3)))
            numeric.push_back(grid.text(row, 1));
    }
    Ids listed;
    for (const GraphModel::Item& item : graph->model().items())
        listed.push_back(item.id);
    EXPECT_EQ(listed, rows);
    EXPECT_EQ(graph->model().plotted(), numeric);

    // Unticking every item in the list leaves the chart empty while values keep coming.
    auto* list = graph->findChild<QListWidget*>("lstItems");
    for (int i = 0; i < list->count(); ++i)
        if (list->item(i)->checkState() == Qt::Checked)
            list->item(i)->setCheckState(Qt::Unchecked);
    EXPECT_TRUE(graph->model().plotted().empty());
    p.runFor("cmdRequestMode1", "cmdStop", 2 * grid.rows());
    EXPECT_TRUE(graph->model().plotted().empty());
}

// A recording replayed at no delay: the graph shows the whole log at once, at the receive times
// the recorder kept, and stays still while the frames pass through the grid.
TEST(GraphWindow, AReplayAtNoDelayDrawsTheWholeLogAtItsReceiveTimes)
{
    test::Watchdog watchdog("graph replay");
    GraphProgram p;
    const QString recording = p.recordLiveData(3);
    ASSERT_FALSE(recording.isEmpty());
    const std::string path = recording.toStdString();

    app::frmGraph* graph = p.graph();
    log::frmLogController* player = p.openInPlayer(recording);
    player->controller().setSpeed(0);
    player->controller().play();
    EXPECT_EQ(p.screen.StatusBar1.text(1), "LOG...END");

    log::LogFile file(path, log::LogFile::Mode::Read);
    const long frames = file.recordCount() - 149;
    const GraphModel& model = graph->model();
    EXPECT_EQ(model.plotted().size(), GraphModel::kDefaultSeries);
    std::size_t plottedFrames = 0;
    double lastTime = 0;
    const Ids plotted = model.plotted();
    for (long k = 0; k < frames; ++k) {
        if (std::count(plotted.begin(), plotted.end(), log::FramePid(*file.readRecord(150 + k))) == 0)
            continue;
        ++plottedFrames;
        lastTime = *file.readRecordTime(150 + k) / 1000.0;
    }
    EXPECT_EQ(model.pointCount(), plottedFrames) << "a sample for every frame of a plotted item";
    EXPECT_DOUBLE_EQ(model.lastTime(), lastTime);
    EXPECT_GT(model.lastTime(), 1.0) << "times are seconds of the recording, not frame numbers";
    EXPECT_NEAR(graph->chart().viewStart(), model.firstTime(), 1e-9);
    EXPECT_NEAR(graph->chart().viewEnd(), model.lastTime(), 1e-9);
    player->close();
}

// The window while a replay draws into it: opened twice it is one window; closed in the middle
// of a replay the replay goes on to its end; opened again it follows the next play.
TEST(GraphWindow, ClosedWhileAReplayDrawsAndOpenedAgain)
{
    test::Watchdog watchdog("graph close");
    GraphProgram p;
    const QString path = p.recordLiveData(3);
    ASSERT_FALSE(path.isEmpty());

    app::frmGraph* graph = p.graph();
    EXPECT_EQ(p.graph(), graph) << "a second press shows the same window";
    EXPECT_EQ(p.window->findChildren<app::frmGraph*>().size(), 1);
    log::frmLogController* player = p.openInPlayer(path);
    player->controller().setSpeed(1);
    QPointer<app::frmGraph> watched(graph);
    int shown = 0;
    QObject::connect(&player->controller(), &log::LogController::frameShown, graph, [&] {
        if (++shown == 5)
            watched->close();
    });
    player->controller().play();
    EXPECT_EQ(p.screen.StatusBar1.text(1), "LOG...END");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(watched.isNull()) << "the closed window is gone";

    app::frmGraph* again = p.graph();
    ASSERT_NE(again, nullptr);
    player->controller().rewind();
    player->controller().play();
    EXPECT_GE(again->model().pointCount(), 4u) << "the new window follows the player";
    player->close();
}

// A log from before frames carried times, and one whose time tail lost its checksum: both replay
// into the graph, the first over frame numbers, the second with the damaged frame at the time of
// the one before it; the export leaves their times blank.
TEST(GraphWindow, OldLogsAndBadTimeTailsReplayWithoutTimes)
{
    test::Watchdog watchdog("graph old logs");
    GraphProgram p;
    const QString old = QDir(p.logFolder()).filePath("old.log"), bad = QDir(p.logFolder()).filePath("bad.log");
    std::vector<std::string> frames;
    std::vector<long> times;
    for (long k = 0; k < 20; ++k) {
        char text[40];
        std::snprintf(text, sizeof text, "486B10410C%02X%02X00", 0x10 + static_cast<int>(k), 0x40);
        frames.push_back(text);
        times.push_back(1000 + 500 * k);
    }
    test::writeLog(old.toStdString(), log::kGenericHeader, "9", frames);
    test::writeLog(bad.toStdString(), log::kGenericHeader, "9", frames, "-", times);
    {
        QFile damaged(bad);
        ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
        damaged.seek(155 * 128 - 1); // the last checksum byte of record 155, frame 6
        char last = 0;
        damaged.getChar(&last);
        damaged.seek(155 * 128 - 1);
        damaged.putChar(static_cast<char>(last ^ 0x5A));
    }
    log::LogFile check(bad.toStdString(), log::LogFile::Mode::Read);
    EXPECT_EQ(check.readRecordTime(155), std::nullopt);
    EXPECT_EQ(check.readRecordTime(156), 4000);

    app::frmGraph* graph = p.graph();
    p.toolbar("Log Controller");
    auto* player = p.window->findChild<log::frmLogController*>();
    for (int speed : {0, 1}) {
        for (const QString& path : {old, bad}) {
            player->setFileChooser([&] { return path; });
            player->imgOpen_Click();
            player->controller().setSpeed(speed);
            player->controller().play();
            const GraphSeries* series = graph->model().series("0C");
            ASSERT_NE(series, nullptr) << speed;
            ASSERT_EQ(series->size(), path == old ? 20u : 19u) << "speed " << speed << ": the damaged frame shares a time";
            const QString axis = graph->chart().picture().timeTitle;
            if (path == old) {
                EXPECT_EQ(axis, "Frame") << speed;
                EXPECT_DOUBLE_EQ(series->at(0).t, 1) << speed;
                EXPECT_DOUBLE_EQ(series->last().t, 20) << speed;
            } else {
                EXPECT_EQ(axis, "Time (s)") << speed;
                EXPECT_DOUBLE_EQ(series->at(0).t, 1.0) << speed;
                EXPECT_DOUBLE_EQ(series->at(4).t, 3.0) << speed << ": frame 6 went in at frame 5's time";
                EXPECT_DOUBLE_EQ(series->last().t, 10.5) << speed;
            }
        }
    }
    player->close();
    std::ostringstream csv;
    log::ExportLog(bad.toStdString(), log::StandardLiveDecoding(), log::ExportFormat::Csv, csv);
    EXPECT_NE(csv.str().find("\r\n3.000,5,0C,"), std::string::npos);
    EXPECT_NE(csv.str().find("\r\n,6,0C,"), std::string::npos) << "no time where the tail is damaged";
}

TEST(GraphCommand, DrawsALogIntoAPictureWithoutADisplay)
{
    GraphProgram p;
    const QString log = p.recordLiveData(2);
    ASSERT_FALSE(log.isEmpty());
    const QString png = QDir(p.folder.path()).filePath("log.png");

    QProcess kvx;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove("QT_QPA_PLATFORM");
    env.remove("DISPLAY");
    kvx.setProcessEnvironment(env);
    kvx.start(KVX_BIN_DIR "/kvx", {"graph", log, "-o", png, "--pids", "0c,0D", "--size", "640x400"});
    ASSERT_TRUE(kvx.waitForFinished(20000));
    EXPECT_EQ(kvx.exitCode(), 0) << kvx.readAllStandardError().toStdString();
    EXPECT_EQ(QImage(png).size(), QSize(640, 400));

    QFile::remove(png);
    kvx.start(KVX_BIN_DIR "/kvx", {"graph", log, "-o", png, "--pids", "0C,A7"});
    ASSERT_TRUE(kvx.waitForFinished(20000));
    EXPECT_EQ(kvx.exitCode(), 1) << "not all that was asked for is drawn";
    EXPECT_TRUE(QString(kvx.readAllStandardError()).contains("no numeric value of A7"));
    EXPECT_FALSE(QImage(png).isNull()) << "the others are";

    // What goes wrong is said: a missing log, a damaged log (drawn up to the damage), a picture
    // that cannot be written.
    const QString folder = p.folder.path();
    auto run = [&](const QStringList& args) {
        kvx.start(KVX_BIN_DIR "/kvx", QStringList{"graph"} + args);
        EXPECT_TRUE(kvx.waitForFinished(20000));
        return std::make_pair(kvx.exitCode(), QString(kvx.readAllStandardError()));
    };
    auto [code, said] = run({folder + "/none.log", "-o", png});
    EXPECT_EQ(code, 1);
    EXPECT_TRUE(said.contains("No such file")) << said.toStdString();
    QFile::copy(log, folder + "/damaged.log");
    {
        QFile damaged(folder + "/damaged.log");
        ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
        damaged.seek(154 * 128);
        damaged.write(QByteArray("\xFF\x7F", 2));
    }
    QFile::remove(png);
    std::tie(code, said) = run({folder + "/damaged.log", "-o", png});
    EXPECT_EQ(code, 1);
    EXPECT_TRUE(said.contains("drew the 5 frames before the damage")) << said.toStdString();
    EXPECT_FALSE(QImage(png).isNull());
    // Cut off where the frames begin, as a copy that stopped short leaves it.
    QFile::copy(log, folder + "/cut.log");
    QFile(folder + "/cut.log").resize(149 * 128);
    std::tie(code, said) = run({folder + "/cut.log", "-o", png});
    EXPECT_EQ(code, 1);
    EXPECT_TRUE(said.contains("nothing to draw: the log holds no frames")) << said.toStdString();
    std::tie(code, said) = run({log, "-o", folder + "/no/such/folder/x.png"});
    EXPECT_EQ(code, 1);
    EXPECT_TRUE(said.contains("cannot write " + folder + "/no/such/folder/x.png: ")) << said.toStdString();
}

} // namespace
} // namespace kvx
