#include "LogTestRig.h"

#include "log/LogController.h"
#include "log/LogFormat.h"

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

} // namespace
} // namespace kvx::log
