#include "link/Hex.h"
#include "link/decode/NissanDecoder.h"
#include "link/decode/NissanItems.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

using namespace kvx::link;
using namespace kvx::link::decode;

namespace {

constexpr int kEngine = 1;
constexpr int kGearbox = 2;

// A reply as the link gives it: length, 62, the identifier, the data, the checksum.
std::string reply(const std::string& identifier, const std::string& data)
{
    const std::string body = "62" + identifier + data;
    std::string text = toHex(static_cast<std::uint8_t>(body.size() / 2)) + body;
    return text + toHex(checksum(*fromHex(text)));
}

} // namespace

TEST(NissanItems, IdentifiersAreUniquePerUnitTypeAndClearOfTheBitmapPositions)
{
    for (int module : {kEngine, kGearbox}) {
        std::set<int> seen;
        for (const auto& item : nissanItems()) {
            if (!(item.units & module))
                continue;
            EXPECT_TRUE(seen.insert(item.identifier).second) << std::hex << item.identifier << " twice";
            const int low = item.identifier & 0xFF;
            // Low bytes 00, 20 and 40 are the support requests and the range markers.
            EXPECT_TRUE(low >= 0x01 && low <= 0x60 && low != 0x20 && low != 0x40) << std::hex << item.identifier;
            EXPECT_EQ(item.form == NissanForm::Switches, item.identifier >> 8 == 0x13) << std::hex << item.identifier;
        }
    }
}

TEST(NissanItems, NamesFitAndFormulasReadTheirByteCounts)
{
    for (const auto& item : nissanItems()) {
        const std::string name = item.name;
        EXPECT_FALSE(name.empty());
        EXPECT_LE(name.size(), 40u) << name;
        EXPECT_TRUE(nissanFormReads(item.form, item.bytes)) << name;
    }
    std::set<std::pair<int, int>> bits[3];
    for (const auto& s : nissanSwitches()) {
        EXPECT_LE(std::string(s.name).size(), 40u) << s.name;
        EXPECT_LE(s.bit, 7) << s.name;
        for (int module : {kEngine, kGearbox}) {
            if (!(s.units & module))
                continue;
            const NissanItem* reg = findNissanItem(s.identifier, module);
            ASSERT_NE(reg, nullptr) << s.name << ": no register for it";
            EXPECT_EQ(reg->form, NissanForm::Switches) << s.name;
            EXPECT_TRUE(bits[module].insert({s.identifier, s.bit}).second) << s.name << " shares its bit";
        }
    }
}

TEST(NissanDecoder, NamesDependOnTheUnitType)
{
    const NissanDecoder d;
    EXPECT_EQ(d.SensorName("1101", kEngine), "Engine speed");
    EXPECT_EQ(d.SensorName("1101", kGearbox), "Turbine speed");
    EXPECT_EQ(d.SensorName("1111", kGearbox), "") << "the engine's only";
    EXPECT_EQ(d.SensorName("1301 7", kEngine), "") << "an unnamed switch";
    EXPECT_EQ(d.SensorName("1101", 0), "");
    for (const char* id : {"", "110", "11011", "1301 8", "1301x2", "ZZ01"})
        EXPECT_EQ(d.SensorName(id, kEngine), "") << '"' << id << '"';
}

TEST(NissanDecoder, ValuesAtTheEdgesOfTheirBytes)
{
    const NissanDecoder d;
    EXPECT_EQ(d.SensorValue(reply("1101", "0000"), 1, 0, kEngine), "0 rpm");
    EXPECT_EQ(d.SensorValue(reply("1101", "FFFF"), 2, 0, kEngine), "65535 rpm") << "no US unit: the same text";
    EXPECT_EQ(d.SensorValue(reply("1102", "00"), 1, 0, kEngine), "-50 \u00B0C");
    EXPECT_EQ(d.SensorValue(reply("1102", "00"), 2, 0, kEngine), "-58 \u00B0F");
    EXPECT_EQ(d.SensorValue(reply("1103", "FF"), 2, 0, kGearbox), "158 mph");
    EXPECT_EQ(d.SensorValue(reply("1107", "00FA"), 2, 0, kEngine), "2.50 ms");
    EXPECT_EQ(d.SensorValue(reply("1107", "03"), 2, 0, kGearbox), "3") << "the same identifier, another item";
}

TEST(NissanDecoder, SignedItemsReadTheTopBitAsTheSign)
{
    const NissanDecoder d;
    EXPECT_EQ(d.SensorValue(reply("1108", "7F"), 1, 0, kEngine), "127 \u00B0");
    EXPECT_EQ(d.SensorValue(reply("1108", "80"), 1, 0, kEngine), "-128 \u00B0");
    EXPECT_EQ(d.SensorValue(reply("1108", "FF"), 1, 0, kEngine), "-1 \u00B0");
    EXPECT_EQ(d.SensorValue(reply("110A", "FFFE"), 1, 0, kGearbox), "-2 rpm");
}

TEST(NissanDecoder, UnusableRepliesGiveNothing)
{
    const NissanDecoder d;
    const std::string good = reply("1101", "02EE");
    EXPECT_EQ(d.SensorValue(good, 1, 0, kEngine), "750 rpm");
    EXPECT_EQ(d.SensorValue(good.substr(0, good.size() - 2), 1, 0, kEngine), "750 rpm") << "without its checksum";
    EXPECT_EQ(d.SensorValue(good, 3, 0, kEngine), "");
    EXPECT_EQ(d.SensorValue(reply("1111", "0100"), 1, 0, kGearbox), "") << "the engine's item from the gearbox";
    EXPECT_EQ(d.SensorValue(reply("1101", "02"), 1, 0, kEngine), "") << "one byte of two";
    EXPECT_EQ(d.SensorValue(reply("1302", "80"), 1, 8, kEngine), "") << "a switch register has bits 0 to 7";
    for (const std::string& bad : {std::string(), std::string("05"), good.substr(0, 9), std::string("0562110102EG"),
                                   std::string("037F223155"), good.substr(0, 8)})
        EXPECT_EQ(d.SensorValue(bad, 1, 0, kEngine), "") << '"' << bad << '"';
}
