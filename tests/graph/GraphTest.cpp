#include "app/frmGraph.h"
#include "log/LogFile.h"
#include "session/GraphModel.h"
#include "support/ProgramWindow.h"
#include "support/Watchdog.h"
#include "ui/GraphChart.h"

#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QProcess>
#include <cmath>
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
}

TEST(GraphModel, HoldsABoundedRecentPastAndFollowsASourceThatGoesBack)
{
    // Thirty minutes of eight items at 20 samples a second fit the real bound.
    EXPECT_GE(GraphModel::kPointsPerSeries, 30u * 60u * 20u);
    GraphModel graph(1000);
    for (int i = 0; i < 30 * 60 * 20; ++i)
        for (const char* id : {"0C", "0D", "0F", "10"})
            graph.offer(id, id, true, std::to_string(i % 100) + " x", "1 y", i / 20.0);
    EXPECT_EQ(graph.pointCount(), 4000u);
    EXPECT_DOUBLE_EQ(graph.lastTime(), (30 * 60 * 20 - 1) / 20.0);
    EXPECT_DOUBLE_EQ(graph.firstTime(), (30 * 60 * 20 - 1000) / 20.0);

    // A rewound replay: what lay after the new time is replaced, never drawn backwards.
    graph.offer("0C", "0C", true, "5 x", "1 y", 1790);
    const GraphSeries& s = *graph.series("0C");
    EXPECT_DOUBLE_EQ(s.last().t, 1790);
    EXPECT_FLOAT_EQ(s.last().metric, 5);
    EXPECT_LT(s.at(s.size() - 2).t, 1790);
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

struct GraphProgram : test::ProgramWindow {
    app::frmGraph* graph()
    {
        toolbar("Graph");
        return window->findChild<app::frmGraph*>();
    }
};

// Live data on the virtual vehicle, with the window opened from the toolbar: the ticked rows'
// values are plotted over the session's clock, in either unit system, and saved as picture and CSV.
TEST(GraphWindow, PlotsLiveDataAndSavesPictureAndData)
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
}

// A recording replayed at no delay: the graph shows the whole log at once, at the receive times
// the recorder kept, and stays still while the frames pass through the grid.
TEST(GraphWindow, AReplayAtNoDelayDrawsTheWholeLogAtItsReceiveTimes)
{
    test::Watchdog watchdog("graph replay");
    GraphProgram p;
    ASSERT_TRUE(p.actions.ConnectModule(ModuleGeneric));
    QTest::mouseClick(p.find<QCheckBox>("chkLog"), Qt::LeftButton);
    p.runFor("cmdRequestMode1", "cmdStop", 3 * p.screen.GridMode1.rows());
    p.toolbar("Disconnect");
    const QStringList files = QDir(p.logFolder()).entryList({"*.log"});
    ASSERT_EQ(files.size(), 1);
    const std::string path = QDir(p.logFolder()).filePath(files[0]).toStdString();

    app::frmGraph* graph = p.graph();
    p.toolbar("Log Controller");
    auto* player = p.window->findChild<log::frmLogController*>();
    ASSERT_NE(player, nullptr);
    player->setFileChooser([&] { return QString::fromStdString(path); });
    player->imgOpen_Click();
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

TEST(GraphCommand, DrawsALogIntoAPictureWithoutADisplay)
{
    test::ProgramWindow p;
    ASSERT_TRUE(p.actions.ConnectModule(ModuleGeneric));
    QTest::mouseClick(p.find<QCheckBox>("chkLog"), Qt::LeftButton);
    p.runFor("cmdRequestMode1", "cmdStop", 2 * p.screen.GridMode1.rows());
    p.toolbar("Disconnect");
    const QString log = QDir(p.logFolder()).filePath(QDir(p.logFolder()).entryList({"*.log"}).value(0));
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

    kvx.start(KVX_BIN_DIR "/kvx", {"graph", log, "-o", png, "--pids", "A7"});
    ASSERT_TRUE(kvx.waitForFinished(20000));
    EXPECT_EQ(kvx.exitCode(), 1);
    EXPECT_TRUE(QString(kvx.readAllStandardError()).contains("no numeric value of A7"));
}

} // namespace
} // namespace kvx
