#include "obd/FreezeFrame.h"
#include "support/CoreVehicle.h"

#include <gtest/gtest.h>
#include <set>

namespace kvx::obd {
namespace {

struct FreezeFrame : ::testing::Test {
    test::CoreVehicle bench;
    Session& s = bench.session;
    void SetUp() override { ASSERT_TRUE(bench.wake()); }
};

// The columns themselves are the four-bank test's; here each paragraph ends with a blank line and
// the walk gives the link back as it found it.
TEST_F(FreezeFrame, ParagraphsEndWithABlankLineAndTheLinkIsPutBack)
{
    bench.link.SetP3Delay(250);
    RequestFreezeFrame(s);
    const auto& runs = bench.screen.txtMode2.runs();
    ASSERT_GE(runs.size(), 2u) << bench.screen.txtMode2.text();
    for (std::size_t i = 1; i < runs.size(); i += 2)
        EXPECT_EQ(runs[i].text.substr(runs[i].text.size() - 4), "\r\n\r\n") << runs[i].text;
    EXPECT_EQ(bench.link.GetP3Delay(), 250);
    EXPECT_FALSE(s.Busy);
    EXPECT_TRUE(bench.screen.tmrKeepAlive.enabled());
}

TEST_F(FreezeFrame, NeverAsksTheParametersTheFrameDoesNotCarry)
{
    RequestFreezeFrame(s);
    // One paragraph per declared parameter, none for the monitor status, the sensor layouts or
    // the range markers, which a frame does not carry.
    const std::set<int> notCarried{0x01, 0x13, 0x1D, 0x20, 0x40, 0x41};
    int supported = 0;
    for (int pid = 1; pid <= 96; ++pid)
        if (s.SupportedPids[static_cast<std::size_t>(pid)][1] && notCarried.count(pid) == 0)
            ++supported;
    ASSERT_GT(supported, 0);
    EXPECT_EQ(static_cast<int>(bench.screen.txtMode2.runs().size()), 2 * supported);
}

TEST_F(FreezeFrame, StopButtonEndsTheWalkAfterTheCurrentParameter)
{
    bench.shell.onProcessEvents = [this] { s.Busy = false; };
    RequestFreezeFrame(s);
    EXPECT_EQ(bench.screen.txtMode2.runs().size(), 2u);
}

} // namespace
} // namespace kvx::obd
