#include "obd/MonitorTests.h"
#include "obd/O2SensorTests.h"
#include "support/CoreVehicle.h"

#include <gtest/gtest.h>

namespace kvx::obd {
namespace {

struct TestWalks : ::testing::Test {
    test::CoreVehicle bench;
    Session& s = bench.session;
    void SetUp() override { ASSERT_TRUE(bench.wake()); }
};

std::vector<int> Tids(const GridModel& grid)
{
    std::vector<int> tids;
    for (int row = 1; row < grid.rows(); ++row)
        tids.push_back(std::stoi(grid.text(row, 0), nullptr, 16));
    return tids;
}

TEST_F(TestWalks, OxygenSensorRowsFollowTheSupportedTests)
{
    bench.screen.cmbMode5.setText("Bank 1 Sensor 1");
    RequestO2SensorTests(s);
    const auto& grid = bench.screen.gridMode5;
    ASSERT_GT(grid.rows(), 1);
    int previous = 0;
    for (int tid : Tids(grid)) {
        EXPECT_GT(tid, previous);
        EXPECT_NE(tid % 0x20, 0) << "a range marker was asked as a test";
        EXPECT_TRUE(s.SupportedPids[static_cast<std::size_t>(tid)][4]);
        previous = tid;
    }
    for (int row = 1; row < grid.rows(); ++row)
        EXPECT_FALSE(grid.text(row, 2).empty()) << "row " << row;
    EXPECT_EQ(bench.screen.StatusBar1.text(1), "");

    // A second run replaces the rows rather than adding to them.
    const int rows = grid.rows();
    RequestO2SensorTests(s);
    EXPECT_EQ(grid.rows(), rows);
}

TEST_F(TestWalks, MonitorLimitTypeFollowsTheComponentByte)
{
    RequestMonitorTests(s);
    const auto& grid = bench.screen.gridMode6;
    ASSERT_GT(grid.rows(), 1);
    bool failing = false;
    for (int row = 1; row < grid.rows(); ++row) {
        const int component = std::stoi(grid.text(row, 1), nullptr, 16);
        EXPECT_LT(component, 0x80) << "the limit-type bit stays out of the CID";
        EXPECT_TRUE(grid.text(row, 4) == "Minimum" || grid.text(row, 4) == "Maximum") << grid.text(row, 4);
        EXPECT_TRUE(grid.text(row, 2).empty()) << "no make chosen, no description";
        failing = failing || grid.text(row, 6) == "FAIL";
    }
    EXPECT_TRUE(failing) << "the vehicle fails some of its monitor tests";
}

// The unit falls silent in the middle of a session and never wakes again.
TEST_F(TestWalks, MonitorWalkWakesFromTheThirdSilenceAndGivesUpAtTheFourteenth)
{
    for (int tid = 1; tid < 0x20; ++tid)
        s.SupportedPids[static_cast<std::size_t>(tid)][5] = true;
    bench.vehicle.setSilent(0x10, true);
    bench.vehicle.setSilent(0x18, true);
    const std::size_t bytesBefore = bench.vehicle.record().bytes(link::TraceOrigin::Tester).size();
    const std::size_t wakeUpsBefore = bench.vehicle.record().inits.size();

    ReadMonitorTests(s, s.HeaderByte1, s.HeaderByte2);

    // Three silent requests; then each failed wake-up and the request after it count one each,
    // so five more requests go out before the sixth failed wake-up reaches fourteen.
    constexpr std::size_t kRequestBytes = 6; // 68 6A F1 06 TID checksum
    EXPECT_EQ(bench.vehicle.record().bytes(link::TraceOrigin::Tester).size() - bytesBefore, 8 * kRequestBytes);
    EXPECT_EQ(bench.vehicle.record().inits.size() - wakeUpsBefore, 6u);
    ASSERT_EQ(bench.shell.boxes.size(), 1u);
    EXPECT_EQ(bench.shell.boxes[0].title, "No Communication");
    EXPECT_EQ(bench.shell.boxes[0].text, "No Response From ECU");
    EXPECT_TRUE(s.LinkDown);
    EXPECT_EQ(bench.screen.gridMode6.rows(), 1);
}

} // namespace
} // namespace kvx::obd
