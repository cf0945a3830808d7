#include "LogTestRig.h"

#include "log/LogController.h"
#include "log/LogFormat.h"
#include "log/Recorder.h"

#include <gtest/gtest.h>

namespace kvx::log {
namespace {

using test::liveFrame;
using test::Player;
using test::writeLog;

const std::vector<std::string> kFrames{liveFrame("0C", "1AF8"), liveFrame("0D", "32"), liveFrame("05", "7B")};

TEST(Player, EveryRecorderHeaderIsRecognisedButTheTransmissionUnits)
{
    const struct {
        std::string header;
        bool known;
        int moduleAfter;
        std::string rowsAfter;
    } cases[] = {
        {kGenericHeader, true, 3, "32"},
        {kNissanEcuHeader, true, 1, ""},
        {kNissanTcuHeader, false, 3, "-"},
        {kToyotaHeader, true, 3, "32"},
        {"KORVENATRONIX OBDII LOG ", false, 3, "-"},
    };
    for (const auto& c : cases) {
        Player p;
        p.rig.session.ModuleIndex = 3;
        p.rig.session.LogGridRows = "-";
        writeLog(p.path(), c.header, "", {});
        EXPECT_EQ(p.controller.OpenLogFile(p.path()), c.known) << c.header;
        EXPECT_EQ(p.rig.session.ModuleIndex, c.moduleAfter) << c.header;
        EXPECT_EQ(p.rig.session.LogGridRows, c.rowsAfter) << c.header;
        if (c.known) {
            EXPECT_EQ(p.rig.session.LogHeader, c.header);
        } else {
            EXPECT_EQ(p.controller.fileLabel(), "File:");
            ASSERT_EQ(p.rig.shell.boxes.size(), 1u);
            EXPECT_EQ(p.rig.shell.boxes[0].text, "Unknown Data Type");
        }
    }
}

TEST(Player, ALogWithoutFramesReadsRecord149AndEnds)
{
    Player p;
    auto& rig = p.rig;
    ASSERT_TRUE(StartLogging(rig.session, rig.folder(), QDateTime(QDate(2009, 1, 17), QTime(8, 0))));
    StopLogging(rig.session);
    ASSERT_TRUE(p.controller.open(rig.session.LogPath));
    EXPECT_EQ(p.controller.totalFramesLabel(), "Total Frames: 0");
    p.controller.play();
    EXPECT_TRUE(p.shown.empty());
    EXPECT_EQ(rig.screen.StatusBar1.text(1), "LOG...END");
    EXPECT_EQ(rig.session.LogLastRecord, 149);
}

TEST(Player, StopThenPlayShowsTheLastFrameAgainAndRewindStartsOver)
{
    Player p;
    writeLog(p.path(), kGenericHeader, "4", kFrames);
    ASSERT_TRUE(p.controller.open(p.path()));
    // The stop button is pressed while the window handles events after the second frame.
    p.rig.shell.onProcessEvents = [&] {
        if (p.shown.size() == 2)
            p.controller.stop();
    };
    p.controller.play();
    EXPECT_EQ(p.rig.screen.StatusBar1.text(1), "LOG...STOP");
    // The frame already being read when stop came is still shown.
    EXPECT_EQ(p.shown.back(), kFrames[1]);
    EXPECT_EQ(p.controller.position(), 2);
    EXPECT_EQ(p.rig.session.LogLastRecord, 152);

    p.rig.shell.onProcessEvents = nullptr;
    p.shown.clear();
    p.controller.play();
    EXPECT_EQ(p.shown, (std::vector<std::string>{kFrames[1], kFrames[2]}));

    p.controller.rewind();
    EXPECT_EQ(p.controller.position(), 0);
}

TEST(Player, PlayIsRefusedWhilePlayingOrWithoutAFileAndClosingWhilePlaying)
{
    Player p;
    p.controller.play();
    EXPECT_TRUE(p.shown.empty());
    writeLog(p.path(), kGenericHeader, "4", kFrames);
    ASSERT_TRUE(p.controller.open(p.path()));
    p.rig.shell.onProcessEvents = [&] {
        p.controller.play(); // re-entry from a click during playback
        p.controller.rewind();
        EXPECT_FALSE(p.controller.queryUnload());
    };
    p.controller.play();
    EXPECT_EQ(p.shown.size(), 4u);
    EXPECT_TRUE(p.controller.queryUnload());
}

TEST(Player, OpeningAnotherFileWhilePlayingStopsThePlaybackSafely)
{
    Player p;
    writeLog(p.path(), kGenericHeader, "4", kFrames);
    ASSERT_TRUE(p.controller.open(p.path()));
    p.rig.shell.onProcessEvents = [&] {
        if (p.shown.size() == 2)
            p.controller.open(p.rig.file("Log/missing.log"));
    };
    p.controller.play();
    EXPECT_EQ(p.rig.screen.StatusBar1.text(1), "LOG...STOP");
    EXPECT_FALSE(p.controller.isOpen());
}

TEST(Player, FramesArePacedBySleepingForTheSpeedInSlicesAndASpeedChangeActsAtOnce)
{
    Player p;
    writeLog(p.path(), kGenericHeader, "4", kFrames);
    ASSERT_TRUE(p.controller.open(p.path()));
    p.controller.setSpeed(100);
    std::vector<link::Micros> showTimes;
    p.rig.shell.onProcessEvents = [&] {
        if (p.shown.size() == 3)
            p.controller.setSpeed(30);
    };
    p.controller.play();
    // One wait follows each of the four frames read; the change made during the third wait ends
    // that wait at the new speed.
    EXPECT_EQ(p.stopwatch.clock.now(), link::ms(100 + 100 + 30 + 30));
    // Slices of at most 10 ms: the wait sleeps instead of spinning.
    EXPECT_EQ(p.stopwatch.sleeps, 10 + 10 + 3 + 3);
}

} // namespace
} // namespace kvx::log
