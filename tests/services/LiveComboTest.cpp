#include "obd/LiveCombo.h"
#include "support/CoreVehicle.h"

#include <gtest/gtest.h>

namespace kvx::obd {
namespace {

TEST(LiveCombo, EverySlotOffSendsNothingUntilStoppedAndATabChangeEndsPolling)
{
    test::CoreVehicle car;
    ASSERT_TRUE(car.wake());
    car.screen.TabStrip1.selectCaption(kComboCaption);
    for (auto& list : car.screen.cmbPid) {
        list.addItem("OFF");
        list.addItem("0C - Engine RPM");
        list.setCurrentIndex(0);
    }
    const std::string before = car.lastExchange();
    car.shell.onProcessEvents = [&] {
        if (car.shell.pumps == 40)
            StopLiveCombo(car.session);
    };
    StartLiveCombo(car.session);
    EXPECT_EQ(car.lastExchange(), before);
    EXPECT_FALSE(car.session.Busy);
    EXPECT_TRUE(car.screen.tmrKeepAlive.enabled());

    car.screen.cmbPid[1].setCurrentIndex(1);
    car.screen.cmbPid[4].setCurrentIndex(1);
    car.shell.pumps = 0;
    car.shell.onProcessEvents = [&] {
        if (car.shell.pumps == 12)
            car.screen.TabStrip1.select(0);
    };
    StartLiveCombo(car.session);
    EXPECT_FALSE(car.screen.lblPid[1].text().empty());
    EXPECT_FALSE(car.screen.lblPida[4].text().empty());
    EXPECT_TRUE(car.screen.lblPid[0].text().empty());
    EXPECT_FALSE(car.session.Busy);
    EXPECT_EQ(car.shell.pumps, 12) << "polling ends at the next slot after the tab change";
}

} // namespace
} // namespace kvx::obd
