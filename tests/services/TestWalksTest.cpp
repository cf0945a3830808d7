#include "obd/MonitorTests.h"
#include "obd/O2SensorTests.h"
#include "support/VehicleSession.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kvx::obd {
namespace {

struct TestWalks : ::testing::Test {
    test::VehicleSession bench;
    Session& s = bench.session;
    void SetUp() override { ASSERT_TRUE(bench.connect()); }
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

TEST_F(TestWalks, MonitorDescriptionsComeWithAMake)
{
    bench.screen.cmbYear.setText("1997");
    bench.screen.cmbMake.setText("Acura");
    RequestMonitorTests(s);
    const auto& grid = bench.screen.gridMode6;
    bool described = false;
    for (int row = 1; row < grid.rows(); ++row)
        described = described || !grid.text(row, 2).empty();
    EXPECT_TRUE(described);
}

// A wire on which the interface echoes but no unit ever answers; it counts what the tester sent.
struct Tally {
    std::size_t bytesSent = 0;
    int breaks = 0;
};

class SilentBus : public link::Wire {
public:
    SilentBus(link::Clock& clock, Tally& tally) : clock_(clock), tally_(tally) {}
    void open() override { open_ = true; }
    void close() override { open_ = false; }
    bool isOpen() const override { return open_; }
    void setBaud(int) override {}
    void setBreak(bool on) override { tally_.breaks += on ? 1 : 0; }
    void write(std::span<const std::uint8_t> bytes) override
    {
        tally_.bytesSent += bytes.size();
        echo_.insert(echo_.end(), bytes.begin(), bytes.end());
    }
    std::size_t read(std::span<std::uint8_t> buf, link::Micros deadline) override
    {
        if (echo_.empty()) {
            clock_.sleepUntil(deadline);
            return 0;
        }
        const std::size_t n = std::min(buf.size(), echo_.size());
        std::copy_n(echo_.begin(), n, buf.begin());
        echo_.erase(echo_.begin(), echo_.begin() + static_cast<std::ptrdiff_t>(n));
        return n;
    }
    void flushInput() override { echo_.clear(); }

private:
    link::Clock& clock_;
    Tally& tally_;
    bool open_ = false;
    std::vector<std::uint8_t> echo_;
};

TEST(TestWalkSilence, WakesFromTheThirdSilenceAndGivesUpAtTheFourteenth)
{
    link::VirtualClock clock;
    Tally tally;
    link::LinkSession link([&](int) { return std::make_unique<SilentBus>(clock, tally); }, clock);
    MainScreen screen;
    test::RecordingShell shell;
    Session s(link, screen, shell);
    std::string result;
    // A session whose unit has gone silent: its re-wake fails and the port stays open.
    EXPECT_FALSE(link.InitializeEcu("33", 10400, 1, link::Iso9141Slow, "", true, result));
    s.settings.ProtocolNumber = link::Iso9141Slow;
    s.LinkDown = false;
    s.HeaderByte1 = "68";
    s.HeaderByte2 = "6A";
    s.EcuAddress = "10";
    for (int tid = 1; tid < 0x20; ++tid)
        s.SupportedPids[static_cast<std::size_t>(tid)][5] = true;
    const int breaksPerWakeUp = tally.breaks;
    ASSERT_GT(breaksPerWakeUp, 0);

    ReadMonitorTests(s, s.HeaderByte1, s.HeaderByte2);

    // Three silent requests; then each failed wake-up and the request after it count one each,
    // so five more requests go out before the sixth failed wake-up reaches fourteen.
    constexpr std::size_t kRequestBytes = 6; // 68 6A F1 06 TID checksum
    EXPECT_EQ(tally.bytesSent, 8 * kRequestBytes);
    EXPECT_EQ(tally.breaks, 7 * breaksPerWakeUp);
    ASSERT_EQ(shell.boxes.size(), 1u);
    EXPECT_EQ(shell.boxes[0].title, "No Communication");
    EXPECT_EQ(shell.boxes[0].text, "No Response From ECU");
    EXPECT_TRUE(s.LinkDown);
    EXPECT_EQ(screen.gridMode6.rows(), 1);
}

} // namespace
} // namespace kvx::obd
