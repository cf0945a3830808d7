#include "obd/Connection.h"
#include "obd/KeepAlive.h"
#include "support/CoreVehicle.h"

#include <gtest/gtest.h>

namespace kvx::obd {
namespace {

TEST(KeepAlive, GoodRepliesKeepTheCountAtZeroAndBusySendsNothing)
{
    test::CoreVehicle car;
    ASSERT_TRUE(ConnectEcu(car.session));
    car.session.SilenceCount = 2;
    KeepAliveTick(car.session);
    EXPECT_EQ(car.session.SilenceCount, 0);
    EXPECT_EQ(car.session.LastFrame.empty(), false);

    car.session.Busy = true;
    car.session.LastFrame.clear();
    KeepAliveTick(car.session);
    EXPECT_TRUE(car.session.LastFrame.empty());
}

TEST(KeepAlive, FailedWakeUpsCountTwiceAndTheFourteenthEndsTheSession)
{
    sim::VehicleConfig config;
    for (int n = 1; n < 20; ++n)
        config.faults.wakeUps[n] = sim::Fault::Silence;
    test::CoreVehicle car(config);
    ASSERT_TRUE(ConnectEcu(car.session));
    car.outwaitSession();

    const int expected[] = {1, 2, 3, 5, 7, 9, 11, 13};
    for (int count : expected) {
        KeepAliveTick(car.session);
        EXPECT_EQ(car.session.SilenceCount, count);
    }
    EXPECT_EQ(car.countStatus(kReconnecting), 5);
    EXPECT_TRUE(car.shell.boxes.empty());

    KeepAliveTick(car.session);
    ASSERT_EQ(car.shell.boxes.size(), 1u);
    EXPECT_EQ(car.shell.boxes[0].title, kNoCommunication);
    EXPECT_EQ(car.shell.boxes[0].text, kNoResponseFromEcu);
    EXPECT_EQ(car.shell.boxes[0].icon, MessageIcon::Exclamation);
    EXPECT_TRUE(car.session.LinkDown);
    EXPECT_FALSE(car.link.IsPortOpen());
}

TEST(KeepAlive, SuccessfulWakeUpClearsTheStatusAndTheReplyClearsTheCount)
{
    test::CoreVehicle car;
    ASSERT_TRUE(ConnectEcu(car.session));
    car.outwaitSession();
    for (int i = 0; i < 3; ++i)
        KeepAliveTick(car.session);
    EXPECT_EQ(car.session.SilenceCount, 3);

    KeepAliveTick(car.session);
    EXPECT_EQ(car.countStatus(kReconnecting), 1);
    EXPECT_EQ(car.screen.StatusBar1.text(1), "");
    EXPECT_EQ(car.session.SilenceCount, 0);
    EXPECT_TRUE(car.screen.tmrKeepAlive.enabled());
}

} // namespace
} // namespace kvx::obd
