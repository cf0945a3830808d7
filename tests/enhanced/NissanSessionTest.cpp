#include "enhanced/Modules.h"
#include "enhanced/NissanConnection.h"
#include "obd/LiveData.h"
#include "support/CoreVehicle.h"

#include <gtest/gtest.h>

namespace kvx::enhanced {
namespace {

TEST(NissanConnect, TransmissionUnitIsWokenByFastInitAndListedAs10)
{
    // The settings' protocol is the generic module's; the Nissan units always take a fast init.
    test::CoreVehicle car;
    ASSERT_TRUE(ConnectModule(car.session, ModuleNissanTcu));
    EXPECT_FALSE(car.session.LinkDown);
    ASSERT_FALSE(car.vehicle.record().inits.empty());
    EXPECT_EQ(car.vehicle.record().inits.back().kind, sim::InitObservation::Kind::FastInit);
    EXPECT_EQ(car.screen.cmbModule.items(), std::vector<std::string>{"10"});
    EXPECT_EQ(car.screen.cmbModule.text(), "10");
    EXPECT_TRUE(car.screen.control("chkLog").enabled());
    EXPECT_TRUE(car.screen.tmrKeepAliveEnhance.enabled());
    EXPECT_FALSE(car.screen.tmrKeepAlive.enabled());
    EXPECT_EQ(car.screen.StatusBar1.text(1), "");
    for (int n = 1; n <= kNissanSupportRequests; ++n)
        EXPECT_EQ(car.countStatus("REQUESTING" + std::string(static_cast<std::size_t>(n), '.')), 1) << n;
    ASSERT_GT(car.screen.GridMode1.rows(), 1);
    EXPECT_EQ(car.screen.GridMode1.text(1, obd::PidColumn), "1101");
}

} // namespace
} // namespace kvx::enhanced
