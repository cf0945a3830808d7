#include "BusTester.h"
#include "SupportBits.h"
#include "link/SimBench.h"
#include "link/decode/NissanDecoder.h"
#include "link/decode/NissanItems.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace kvx::sim::test {
namespace {

const char* const kSupportRequests[] = {"1100", "1120", "1140", "1200", "1220", "1240", "1300", "1320", "1340"};

// A bench woken the way the Nissan modes wake a unit: fast init with "81 <unit> FC 81".
struct NissanBench : kvx::test::SimBench {
    explicit NissanBench(const std::string& unit) : unit(unit) {}
    bool start(bool reconnect = false)
    {
        const std::string header = "81" + unit + "FC81";
        return wake(3, header + link.ComputeChecksum(header), reconnect);
    }
    std::string read(const std::string& identifier) { return ask("0522" + identifier + "0401"); }
    std::string unit;
};

int moduleOf(const std::string& unit) { return unit == "10" ? 1 : 2; }

// The identifiers the unit reports present over the nine support requests.
std::set<int> reportedPresent(NissanBench& bench)
{
    std::set<int> present;
    for (const std::string request : kSupportRequests) {
        const std::string r = bench.read(request);
        EXPECT_EQ(r.size(), 16u) << request << ": " << r;
        if (r.size() < 16)
            continue;
        EXPECT_EQ(r.substr(2, 6), "62" + request);
        const auto marked = markedBy(r.substr(8, 8), std::stoi(request, nullptr, 16));
        present.insert(marked.begin(), marked.end());
    }
    return present;
}

} // namespace

TEST(NissanUnits, SupportRepliesReportExactlyTheItemsTheDecoderNames)
{
    const link::NissanDecoder decoder;
    for (const std::string unit : {"10", "18"}) {
        NissanBench bench(unit);
        ASSERT_TRUE(bench.start());
        const int module = moduleOf(unit);
        const std::set<int> present = reportedPresent(bench);
        std::set<int> unnamedRegisters;
        for (int id : present) {
            const std::string text = link::toHex(static_cast<std::uint8_t>(id >> 8)) + link::toHex(static_cast<std::uint8_t>(id));
            if ((id & 0xFF) == 0x20 || (id & 0xFF) == 0x40) {
                EXPECT_TRUE(present.lower_bound(id + 1) != present.end() && *present.lower_bound(id + 1) <= id + 32)
                    << text << " marks a range that has nothing";
                continue;
            }
            EXPECT_NE(decoder.SensorName(text, module), "") << unit << " reports " << text;
            if (id >> 8 != 0x13)
                continue;
            bool named = false;
            for (char bit = '0'; bit <= '7'; ++bit)
                named = named || !decoder.SensorName(text + " " + bit, module).empty();
            if (!named)
                unnamedRegisters.insert(id);
        }
        for (const auto& item : link::decode::nissanItems()) {
            if (!(item.units & module))
                continue;
            EXPECT_TRUE(present.count(item.identifier)) << unit << " does not report " << std::hex << item.identifier;
        }
        if (module == 1) {
            EXPECT_EQ(unnamedRegisters, std::set<int>{0x1303});
            EXPECT_TRUE(present.count(0x1160)) << "row 96";
            EXPECT_TRUE(present.count(0x1120) && present.count(0x1140)) << "block 11 uses all three ranges";
        }
    }
}

TEST(NissanUnits, LiveValuesDecodeToPlausibleNumbers)
{
    const link::NissanDecoder decoder;
    NissanBench engine("10");
    ASSERT_TRUE(engine.start());
    const double rpm = std::stod(decoder.SensorValue(engine.read("1101"), 1, 0, 1));
    EXPECT_GT(rpm, 600);
    EXPECT_LT(rpm, 1400) << "a cold idle";
    const std::string coolant = decoder.SensorValue(engine.read("1102"), 2, 0, 1);
    EXPECT_EQ(coolant.substr(coolant.size() - 3), "\u00B0F");
    EXPECT_NEAR(std::stod(coolant), 64, 10) << "a cold engine on an 18 \u00B0C day";
    EXPECT_EQ(decoder.SensorValue(engine.read("1301"), 1, 2, 1), "ON") << "parked while it warms up";
    EXPECT_EQ(decoder.SensorValue(engine.read("1104"), 1, 0, 1).substr(0, 3), "14.");

    // Later, on the road: the gearbox reports a gear and the output shaft turning.
    NissanBench gearbox("18");
    gearbox.clock.sleepFor(link::ms(200'000));
    ASSERT_TRUE(gearbox.start());
    const int gear = std::stoi(decoder.SensorValue(gearbox.read("1107"), 1, 0, 2));
    EXPECT_GE(gear, 1);
    EXPECT_LE(gear, 4);
    EXPECT_GT(std::stod(decoder.SensorValue(gearbox.read("1105"), 1, 0, 2)), 100);
}

TEST(NissanUnits, OnAPtyTheStartMessageAloneOpensTheSession)
{
    VehicleConfig config;
    config.noBreaks = true;
    BusTester t(config);
    EXPECT_EQ(t.request({0x81, 0x18, 0xFC, 0x81, 0x16}), (Bytes{0x83, 0xFC, 0x18, 0xC1, 0xE5, 0x8F, 0xCC}));
    const Bytes r = t.request({0x05, 0x22, 0x11, 0x07, 0x04, 0x01}, true);
    ASSERT_EQ(r.size(), 6u);
    EXPECT_EQ(Bytes(r.begin(), r.begin() + 4), (Bytes{0x04, 0x62, 0x11, 0x07})) << "the gearbox's gear position";
}

} // namespace kvx::sim::test
