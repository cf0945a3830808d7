#include "LogTestRig.h"

#include "log/LogController.h"
#include "log/LogFormat.h"
#include "log/Recorder.h"

#include <gtest/gtest.h>

namespace kvx::log {
namespace {

using test::liveFrame;

// Decoding that shows which message and selector produced a text.
LiveDecoding taggedDecoding()
{
    return {[](const std::string& message, int selector) { return std::to_string(selector) + ":" + message.substr(10); },
            [](const std::string& pid) { return "about " + pid; }};
}

TEST(GenericReplay, TheGridGetsARowPerRecordedParameterAndFramesUpdateOnlyTheirRow)
{
    GridModel grid("GridMode1", 5);
    FrameHandler handler = GenericFrameHandler(grid, taggedDecoding());
    handler.prepare({liveFrame("0D", "32"), liveFrame("0C", "1AF8"), liveFrame("0D", "33"), "486B", ""});
    ASSERT_EQ(grid.rows(), 3);
    EXPECT_EQ(grid.text(1, 1), "0D");
    EXPECT_EQ(grid.text(2, 1), "0C");
    EXPECT_EQ(grid.text(2, 2), "about 0C");
    EXPECT_EQ(grid.text(1, 0), "þ");
    EXPECT_EQ(grid.cell(1, 0).fontName, "Wingdings");

    handler.show(liveFrame("0C", "1AF8"));
    EXPECT_EQ(grid.text(2, 3), "1:1AF800");
    EXPECT_EQ(grid.text(2, 4), "2:1AF800");
    EXPECT_EQ(grid.text(1, 3), "");

    // Frames of no row, and the empty record before the first frame, change nothing.
    handler.show(liveFrame("05", "7B"));
    handler.show("");
    handler.show("486B10");
    EXPECT_EQ(grid.text(1, 3), "");
    EXPECT_EQ(grid.text(2, 3), "1:1AF800");
}

// What the live poller shows for a run of messages is what the replay of its recording shows.
TEST(GenericReplay, ARecordedRunReplaysToTheSameGridTextsAsLive)
{
    test::LogRig rig;
    const std::vector<std::string> messages{liveFrame("0C", "1AF8"), liveFrame("0D", "32"), liveFrame("0C", "1B00"),
                                            liveFrame("05", "7B"), liveFrame("0D", "40")};
    GridModel live("live", 5);
    FrameHandler liveView = GenericFrameHandler(live, taggedDecoding());
    liveView.prepare(messages);
    ASSERT_TRUE(StartLogging(rig.session, rig.folder(), QDateTime(QDate(2024, 3, 5), QTime(7, 8, 9))));
    for (const auto& m : messages) {
        WriteLogFrame(rig.session, m);
        liveView.show(m);
    }
    StopLogging(rig.session);

    test::VirtualStopwatch stopwatch;
    LogController player(rig.session, stopwatch,
                         {{kGenericHeader, GenericFrameHandler(rig.screen.GridMode1, taggedDecoding())}});
    player.setSpeed(0);
    rig.screen.TabStrip1.add({"LIVE DATA", "", "Frame1"});
    rig.screen.TabStrip1.add({"INFO", "", "Frame6"});
    rig.screen.TabStrip1.select(1);
    ASSERT_TRUE(player.open(rig.session.LogPath));
    EXPECT_EQ(rig.screen.TabStrip1.selectedCaption(), "LIVE DATA");
    player.play();
    ASSERT_EQ(rig.screen.GridMode1.rows(), live.rows());
    for (int row = 1; row < live.rows(); ++row)
        for (int col = 1; col <= 4; ++col)
            EXPECT_EQ(rig.screen.GridMode1.text(row, col), live.text(row, col)) << row << "," << col;
}

} // namespace
} // namespace kvx::log
