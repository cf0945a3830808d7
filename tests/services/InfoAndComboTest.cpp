#include "obd/InfoPids.h"
#include "obd/LiveCombo.h"
#include "support/VehicleSession.h"

#include <gtest/gtest.h>

namespace kvx::obd {
namespace {

struct InfoAndCombo : ::testing::Test {
    test::VehicleSession bench;
    Session& s = bench.session;
    void SetUp() override
    {
        ASSERT_TRUE(bench.connect());
        s.SupportedPids[0x01][0] = true;
        s.SupportedPids[0x1C][0] = true;
        s.SupportedPids[0x13][0] = true;
    }
};

TEST_F(InfoAndCombo, UndeclaredParameterIsNotSupportedWithoutAsking)
{
    const std::string before = bench.lastExchange();
    ClickModeOnce(s, 4);
    EXPECT_EQ(bench.screen.txtInfo.text(), "Not Supported");
    EXPECT_EQ(bench.lastExchange(), before);
}

TEST_F(InfoAndCombo, ThirdButtonDoesNothingAtAll)
{
    bench.screen.txtInfo.setText("earlier");
    bench.screen.tmrKeepAlive.setEnabled(false);
    ClickModeOnce(s, 2);
    EXPECT_EQ(bench.screen.txtInfo.text(), "earlier");
    EXPECT_FALSE(bench.screen.tmrKeepAlive.enabled());
}

TEST_F(InfoAndCombo, ComboWithEverySlotOffSendsNothingUntilStopped)
{
    bench.screen.TabStrip1.add({"LIVE DATA", "Data Parameters", "Frame1"});
    bench.screen.TabStrip1.add({kComboCaption, "Data Parameters", "Frame7"});
    bench.screen.TabStrip1.select(1);
    for (auto& list : bench.screen.cmbPid) {
        list.addItem("OFF");
        list.addItem("0C - Engine RPM");
        list.setCurrentIndex(0);
    }
    const std::string before = bench.lastExchange();
    bench.shell.onProcessEvents = [this] {
        if (bench.shell.pumps == 40)
            StopLiveCombo(s);
    };
    StartLiveCombo(s);
    EXPECT_EQ(bench.lastExchange(), before);
    EXPECT_FALSE(s.Busy);
    EXPECT_TRUE(bench.screen.tmrKeepAlive.enabled());
}

TEST_F(InfoAndCombo, ComboFillsTheChosenSlotsAndStopsOnATabChange)
{
    bench.screen.TabStrip1.add({"LIVE DATA", "Data Parameters", "Frame1"});
    bench.screen.TabStrip1.add({kComboCaption, "Data Parameters", "Frame7"});
    bench.screen.TabStrip1.select(1);
    for (auto& list : bench.screen.cmbPid) {
        list.addItem("OFF");
        list.addItem("0C - Engine RPM");
        list.setCurrentIndex(0);
    }
    bench.screen.cmbPid[1].setCurrentIndex(1);
    bench.screen.cmbPid[4].setCurrentIndex(1);
    bench.shell.onProcessEvents = [this] {
        if (bench.shell.pumps == 12)
            bench.screen.TabStrip1.select(0);
    };
    StartLiveCombo(s);
    EXPECT_FALSE(bench.screen.lblPid[1].text().empty());
    EXPECT_FALSE(bench.screen.lblPida[4].text().empty());
    EXPECT_TRUE(bench.screen.lblPid[0].text().empty());
    EXPECT_FALSE(s.Busy);
    EXPECT_EQ(bench.shell.pumps, 12) << "polling ends at the next slot after the tab change";
    EXPECT_TRUE(bench.shell.boxes.empty());
}

} // namespace
} // namespace kvx::obd
