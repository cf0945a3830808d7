#include "data/GridLayouts.h"
#include "enhanced/Modules.h"
#include "log/EnhancedReplay.h"
#include "log/LinkReplay.h"
#include "log/LogController.h"
#include "log/Recorder.h"
#include "log/LogTestRig.h"
#include "obd/Disconnect.h"
#include "support/CoreVehicle.h"

#include <QDateTime>
#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace kvx::enhanced {
namespace {

using Texts = std::vector<std::vector<std::string>>;

Texts gridTexts(const GridModel& grid)
{
    Texts texts;
    for (int row = 1; row < grid.rows(); ++row)
        texts.push_back({grid.text(row, 1), grid.text(row, 2), grid.text(row, 3), grid.text(row, 4)});
    return texts;
}

// One recorded pass of a module's live data on the virtual vehicle, then its log played back
// through the player with the program's own frame handlers.
void expectReplayShowsWhatLiveShowed(int module)
{
    test::CoreVehicle car;
    ASSERT_TRUE(ConnectModule(car.session, module));
    QTemporaryDir dir;
    QDir(dir.path()).mkdir("Log");
    ASSERT_TRUE(log::StartLogging(car.session, garage::foldersBeside(dir.path()),
                                  QDateTime(QDate(2026, 11, 23), QTime(9, 0))));
    car.session.Busy = true;
    ASSERT_TRUE(PollModuleLiveData(car.session));
    log::StopLogging(car.session);
    const Texts live = gridTexts(car.screen.GridMode1);
    ASSERT_GT(live.size(), 10u);
    obd::Disconnect(car.session);
    car.screen.GridMode1.clear();

    test::VirtualStopwatch stopwatch;
    log::LogController player(car.session, stopwatch, log::SessionFrameHandlers(car.session));
    player.setSpeed(0);
    ASSERT_TRUE(player.open(car.session.LogPath));
    player.play();
    EXPECT_EQ(car.screen.StatusBar1.text(1), "LOG...END");
    EXPECT_EQ(gridTexts(car.screen.GridMode1), live);
    EXPECT_EQ(car.screen.GridMode1.text(0, data::PidColumn), "PID");
}

TEST(EnhancedReplay, NissanEngineLogReplaysToTheLiveGridSwitchRowsIncluded) { expectReplayShowsWhatLiveShowed(ModuleNissanEcu); }

TEST(EnhancedReplay, ToyotaLogReplaysToTheLiveGridEverySubValueIncluded) { expectReplayShowsWhatLiveShowed(ModuleToyota); }

TEST(EnhancedReplay, DamagedAndForeignFramesChangeNothing)
{
    GridModel grid("GridMode1", 5);
    const link::NissanDecoder nissan;
    log::FrameHandler handler = log::NissanFrameHandler(grid, nissan, [] { return int(ModuleNissanEcu); });
    // A refusal, the empty frame before the first, a short text: no rows and no crash.
    handler.prepare({"037F2231", "", "06"});
    EXPECT_EQ(grid.rows(), 1);
    handler.prepare({"0562110104D2"});
    ASSERT_EQ(grid.rows(), 2);
    const std::string shown = grid.text(1, data::ValueColumn);
    for (const char* frame : {"037F2231", "", "0662", "0562110204D2"})
        handler.show(frame);
    EXPECT_EQ(grid.text(1, data::ValueColumn), shown);

    const link::ToyotaDecoder toyota;
    handler = log::ToyotaFrameHandler(grid, toyota);
    handler.prepare({"", "486B107F0112", "486B1041B1"});
    for (const char* frame : {"", "486B10", "486B1041C1 C101 0", "XY B101 0"})
        handler.show(frame);
    for (int row = 1; row < grid.rows(); ++row)
        EXPECT_EQ(grid.text(row, 1).substr(0, 2), "B1");
}

} // namespace
} // namespace kvx::enhanced
