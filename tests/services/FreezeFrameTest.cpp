#include "obd/FreezeFrame.h"
#include "support/CoreVehicle.h"

#include <QString>
#include <gtest/gtest.h>

namespace kvx::obd {
namespace {

struct FreezeFrame : ::testing::Test {
    test::CoreVehicle bench;
    Session& s = bench.session;
    void SetUp() override { ASSERT_TRUE(bench.wake()); }
};

TEST_F(FreezeFrame, ParagraphsLineUpWithRedValues)
{
    bench.link.SetP3Delay(250);
    RequestFreezeFrame(s);
    const auto& runs = bench.screen.txtMode2.runs();
    ASSERT_GE(runs.size(), 2u) << bench.screen.txtMode2.text();
    ASSERT_EQ(runs.size() % 2, 0u);
    for (std::size_t i = 0; i < runs.size(); i += 2) {
        // A 40-column description, then two 20-column values in red and a blank line.
        EXPECT_EQ(runs[i].color, kBlack);
        EXPECT_EQ(runs[i].text.size(), 42u) << runs[i].text;
        EXPECT_EQ(runs[i].text.substr(40), "\r\n");
        EXPECT_EQ(runs[i + 1].color, kRed);
        // Values may hold a degree sign, so the columns are counted in characters, not bytes.
        const QString values = QString::fromStdString(runs[i + 1].text);
        EXPECT_EQ(values.size(), 44) << runs[i + 1].text;
        EXPECT_TRUE(values.endsWith("\r\n\r\n")) << runs[i + 1].text;
    }
    EXPECT_EQ(bench.link.GetP3Delay(), 250);
    EXPECT_FALSE(s.Busy);
    EXPECT_TRUE(bench.screen.tmrKeepAlive.enabled());
}

TEST_F(FreezeFrame, NeverAsksTheParametersTheFrameDoesNotCarry)
{
    RequestFreezeFrame(s);
    // One paragraph per declared parameter, none for ranges, layouts or the monitor status.
    int supported = 0;
    for (int pid = 1; pid <= 96; ++pid)
        if (s.SupportedPids[static_cast<std::size_t>(pid)][1] && !SkippedInFreezeFrame(pid))
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
