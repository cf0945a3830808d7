#include "link/Hex.h"
#include "link/decode/ToyotaDecoder.h"
#include "link/decode/ToyotaItems.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <tuple>

using namespace kvx::link;
using namespace kvx::link::decode;

namespace {

// A service 01 reply from the engine unit with its checksum: ISO 9141 header unless told.
std::string reply(const std::string& parameterAndData, const std::string& header = "486B10")
{
    const std::string text = header + "41" + parameterAndData;
    return text + toHex(checksum(*fromHex(text)));
}

} // namespace

TEST(ToyotaItems, SlotsAreUniqueAndFitInOneIso9141Reply)
{
    std::set<std::tuple<int, int, int>> slots;
    std::set<std::tuple<int, int>> valueBytes;
    for (const auto& item : toyotaItems()) {
        const std::string name = item.name;
        EXPECT_FALSE(name.empty());
        EXPECT_LE(name.size(), 40u) << name;
        EXPECT_TRUE(slots.insert({item.parameter, item.a, item.b}).second) << name << ": slot used twice";
        // The support bitmaps B0, C0, E0 and the never-asked D0 hold no values.
        EXPECT_GT(item.parameter, 0xB0) << name;
        EXPECT_TRUE(item.parameter % 0x10 != 0) << name;
        EXPECT_GE(item.a, 1) << name;
        EXPECT_LE(item.a + item.bytes - 1, kToyotaMaxDataBytes) << name;
        EXPECT_LE(item.b, 8) << name;
        if (item.b > 0) {
            EXPECT_EQ(item.bytes, 1) << name << ": a switch is one bit of one byte";
            EXPECT_EQ(item.unit, Unit::None) << name;
            continue;
        }
        EXPECT_TRUE(item.bytes == 1 || item.bytes == 2) << name << ": no formula for that many bytes";
        for (int k = 0; k < item.bytes; ++k)
            EXPECT_TRUE(valueBytes.insert({item.parameter, item.a + k}).second) << name << " overlaps another value";
    }
}

TEST(ToyotaDecoder, NamesBySlot)
{
    const ToyotaDecoder d;
    EXPECT_EQ(d.SensorName("B1", 2, 0), "") << "the second byte of the engine speed";
    EXPECT_EQ(d.SensorName("C2", 1, 0), "") << "the switch byte has no value of its own";
    for (const char* p : {"", "B", "B10", "ZZ", "B0", "D0", "FF"})
        EXPECT_EQ(d.SensorName(p, 1, 0), "") << '"' << p << '"';
}

TEST(ToyotaDecoder, ValuesAtTheEdgesAndInBothUnitSystems)
{
    const ToyotaDecoder d;
    const std::string b1 = reply("B10BB846");
    EXPECT_EQ(d.SensorValue(1, 0, b1, 1), "750 rpm");
    EXPECT_EQ(d.SensorValue(1, 0, b1, 2), "750 rpm");
    EXPECT_EQ(d.SensorValue(3, 0, b1, 1), "70 km/h");
    EXPECT_EQ(d.SensorValue(3, 0, b1, 2), "43 mph");
    EXPECT_EQ(d.SensorValue(3, 0, reply("B2000000"), 1), "-64.0 \u00B0");
    EXPECT_EQ(d.SensorValue(1, 0, reply("C100FF8C"), 2), "-40 \u00B0F");
    EXPECT_EQ(d.SensorValue(2, 0, reply("C100FF8C"), 1), "215 \u00B0C");
    EXPECT_EQ(d.SensorValue(1, 0, reply("B2FFFF80"), 1), "655.35 ms");
    EXPECT_EQ(d.SensorValue(1, 0, reply("E28000", "84F110"), 1), "0.0 %") << "a KWP2000 message";
}

TEST(ToyotaDecoder, SwitchBitsCountFromOne)
{
    const ToyotaDecoder d;
    const std::string c2 = reply("C210");
    EXPECT_EQ(d.SensorValue(1, 5, c2, 1), "ON");
    EXPECT_EQ(d.SensorValue(1, 1, c2, 1), "OFF");
    EXPECT_EQ(d.SensorValue(1, 8, reply("C280"), 2), "ON");
}

TEST(ToyotaDecoder, UnusableRepliesGiveNothing)
{
    const ToyotaDecoder d;
    EXPECT_EQ(d.SensorValue(3, 0, reply("B10BB8"), 1), "") << "the reply ends before byte 3";
    EXPECT_EQ(d.SensorValue(1, 0, reply("B10B"), 1), "") << "one byte of two";
    EXPECT_EQ(d.SensorValue(1, 1, reply("E18040"), 1), "") << "a slot the parameter does not have";
    EXPECT_EQ(d.SensorValue(1, 0, reply("B10BB846"), 0), "");
    const std::string negative = "486B107F0112" + toHex(checksum(*fromHex("486B107F0112")));
    for (const std::string& bad : {std::string(), std::string("486B"), reply("B10BB846").substr(1), negative,
                                   std::string("486B1041B1ZZB84600")})
        EXPECT_EQ(d.SensorValue(1, 0, bad, 1), "") << '"' << bad << '"';
}
