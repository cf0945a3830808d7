#include "data/GridLayouts.h"
#include "enhanced/Modules.h"
#include "enhanced/NissanConnection.h"
#include "support/CoreVehicle.h"

#include <algorithm>
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
    EXPECT_TRUE(car.screen.control("chkLog").enabled());
    EXPECT_TRUE(car.screen.tmrKeepAliveEnhance.enabled());
    EXPECT_FALSE(car.screen.tmrKeepAlive.enabled());
    for (int n = 1; n <= kNissanSupportRequests; ++n)
        EXPECT_EQ(car.countStatus("REQUESTING" + std::string(static_cast<std::size_t>(n), '.')), 1) << n;
    ASSERT_GT(car.screen.GridMode1.rows(), 1);
    EXPECT_EQ(car.screen.GridMode1.text(1, data::PidColumn), "1101");
    // The start frame went out addressed to the transmission unit.
    std::string sent;
    for (const auto& byte : car.vehicle.record().bytes(link::TraceOrigin::Tester))
        sent += link::toHex(link::Bytes{byte.byte});
    EXPECT_NE(sent.find("8118FC8116"), std::string::npos);
}

TEST(NissanConnect, EngineListsItsItemsAndOnlyTheNamedSwitches)
{
    test::CoreVehicle car;
    // Connection clears blocks 11-13 as decimal columns: an earlier unit's 1150 survives, while
    // an entry of column 11 does not.
    car.session.SupportedPids[0x50][17] = true;
    car.session.SupportedPids[5][11] = true;
    ASSERT_TRUE(ConnectModule(car.session, ModuleNissanEcu));
    EXPECT_FALSE(car.session.SupportedPids[5][11]);
    std::vector<std::string> labels;
    const GridModel& grid = car.screen.GridMode1;
    for (int row = 1; row < grid.rows(); ++row) {
        labels.push_back(grid.text(row, data::PidColumn));
        // Only the stale entry lacks a name on this unit.
        EXPECT_EQ(grid.text(row, data::DescriptionColumn).empty(), labels.back() == "1150") << labels.back();
    }
    const auto listed = [&](const std::string& label) {
        return std::find(labels.begin(), labels.end(), label) != labels.end();
    };
    // The range bits 1120 and 1140 are set in the unit's answers, yet never listed; 1160 is.
    EXPECT_TRUE(car.session.SupportedPids[0x20][17]);
    EXPECT_FALSE(listed("1120"));
    EXPECT_FALSE(listed("1140"));
    EXPECT_TRUE(listed("1160"));
    EXPECT_TRUE(listed("1150"));
    EXPECT_TRUE(listed("1302 7"));
    EXPECT_FALSE(listed("1302 4"));
    EXPECT_FALSE(listed("1302"));
    // Register 1303 is reported, but none of its bits has a name.
    EXPECT_TRUE(car.session.SupportedPids[3][19]);
    for (const auto& label : labels)
        EXPECT_NE(label.substr(0, 4), "1303");
    EXPECT_EQ(car.countStatus("ADDING SENSORS " + std::to_string(grid.rows() - 1)), 1);
}

} // namespace
} // namespace kvx::enhanced
