#include "obd/SupportedPids.h"
#include "support/CoreVehicle.h"

#include <gtest/gtest.h>

namespace kvx::obd {
namespace {

std::vector<int> marked(const Session& session, int column)
{
    std::vector<int> pids;
    for (int pid = 0; pid < Session::kPidRows; ++pid)
        if (session.SupportedPids[static_cast<std::size_t>(pid)][static_cast<std::size_t>(column)])
            pids.push_back(pid);
    return pids;
}

TEST(DecodeSupportedPids, BitmapExampleMarksItsThirtyTwoParameters)
{
    test::CoreVehicle car;
    EXPECT_EQ(DecodeSupportedPids(car.session, "486B104100BE1FA81378", "01"), "10");
    EXPECT_EQ(marked(car.session, 0), (std::vector<int>{0x01, 0x03, 0x04, 0x05, 0x06, 0x07, 0x0C, 0x0D, 0x0E, 0x0F,
                                                       0x10, 0x11, 0x13, 0x15, 0x1C, 0x1F, 0x20}));
    EXPECT_TRUE(marked(car.session, 1).empty());
    EXPECT_EQ(car.session.EcuAddress, "10");
}

TEST(DecodeSupportedPids, SecondNewUnitBecomesTheUnitInUse)
{
    test::CoreVehicle car;
    DecodeSupportedPids(car.session, "486B104100BE1FA81378", "01");
    DecodeSupportedPids(car.session, "486B18410080000000C0", "01");
    DecodeSupportedPids(car.session, "486B104100BE1FA81378", "01");
    EXPECT_EQ(car.screen.cmbModule.items(), (std::vector<std::string>{"10", "18"}));
    EXPECT_EQ(car.screen.cmbModule.text(), "18");
    EXPECT_EQ(car.session.EcuAddress, "18");
    EXPECT_EQ(DecodeSupportedPids(car.session, "486B", "01"), "");
    EXPECT_EQ(car.screen.cmbModule.items().size(), 2u);
}

} // namespace
} // namespace kvx::obd
