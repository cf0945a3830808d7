#include "link/decode/PidValue.h"

#include "link/Hex.h"
#include "support/HexFrames.h"

#include <gtest/gtest.h>

using namespace kvx::link::decode;
using kvx::link::toHex;
using kvx::test::ecu;

namespace {
std::string metric(const std::string& body)
{
    return formatLiveValue(ecu("41" + body), Metric);
}
std::string us(const std::string& body)
{
    return formatLiveValue(ecu("41" + body), Customary);
}
} // namespace

TEST(LiveValue, SingleByteScalingsAtBothEnds)
{
    EXPECT_EQ(metric("0400"), "0.0 %");
    EXPECT_EQ(metric("04FF"), "100.0 %");
    EXPECT_EQ(metric("0500"), "-40 \u00B0C");
    EXPECT_EQ(us("0500"), "-40 \u00B0F");
    EXPECT_EQ(metric("05FF"), "215 \u00B0C");
    EXPECT_EQ(us("05FF"), "419 \u00B0F");
    EXPECT_EQ(metric("0600"), "-100.0 %");
    EXPECT_EQ(metric("0680"), "0.0 %");
    EXPECT_EQ(metric("06FF"), "99.2 %");
    EXPECT_EQ(metric("0DFF"), "255 km/h");
    EXPECT_EQ(us("0DFF"), "158 mph");
    EXPECT_EQ(metric("0E00"), "-64.0 \u00B0");
    EXPECT_EQ(metric("0EFF"), "63.5 \u00B0");
    EXPECT_EQ(metric("0B41"), "65 kPa");
    EXPECT_EQ(us("0B41"), "19.19 inHg");
}

TEST(LiveValue, SixteenBitAndSignedValues)
{
    EXPECT_EQ(metric("0C1AF8"), "1726 rpm");
    EXPECT_EQ(metric("0C0000"), "0 rpm");
    EXPECT_EQ(metric("0CFFFF"), "16384 rpm");  // 16383.75 rounds up
    EXPECT_EQ(metric("10FFFF"), "655.35 g/s");
    EXPECT_EQ(us("10FFFF"), "86.69 lb/min");
    EXPECT_EQ(metric("3C0000"), "-40.0 \u00B0C");
    EXPECT_EQ(metric("3CFFFF"), "6513.5 \u00B0C");
    EXPECT_EQ(metric("423039"), "12.345 V");
    EXPECT_EQ(metric("328000"), "-8192.00 Pa");
    EXPECT_EQ(us("328000"), "-32.888 inH2O");
    EXPECT_EQ(metric("327FFF"), "8191.75 Pa");
    EXPECT_EQ(metric("32FFFF"), "-0.25 Pa");
}

TEST(LiveValue, OxygenSensorsGiveTheirTwoReadingsOneACell)
{
    EXPECT_EQ(metric("145A80"), "0.450 V");
    EXPECT_EQ(us("145A80"), "trim 0.0 %");
    EXPECT_EQ(metric("14FF00"), "1.275 V");
    EXPECT_EQ(us("14FF00"), "trim -100.0 %");
    EXPECT_EQ(us("145AFF"), "trim not used");
    EXPECT_EQ(metric("2480008000"), "ratio 1.000");
    EXPECT_EQ(us("2480008000"), "4.000 V");
    EXPECT_EQ(us("3480008000"), "0.00 mA");
    EXPECT_EQ(us("3400000000"), "-128.00 mA");
}

TEST(LiveValue, BitMappedParametersGiveWords)
{
    EXPECT_EQ(metric("00BE1FA813"), "01 03 04 05 06 07 0C 0D 0E 0F 10 11 13 15 1C 1F 20");
    EXPECT_EQ(metric("2000000000"), "none");
    EXPECT_EQ(metric("0183076504"), "MIL on, 3 codes");
    EXPECT_EQ(us("0183076504"), "1 of 7 incomplete");
    EXPECT_EQ(metric("4100076504"), "7 monitors enabled");
    EXPECT_EQ(us("4100076504"), "1 not complete");
    EXPECT_EQ(metric("020000"), "none");
    EXPECT_EQ(metric("020301"), "P0301");
    EXPECT_EQ(metric("030200"), "Closed loop");
    EXPECT_EQ(us("030200"), "not present");
    EXPECT_EQ(metric("030102"), "Open loop, cold");
    EXPECT_EQ(us("030102"), "Closed loop");
    EXPECT_EQ(metric("1233"), "Invalid (33)");
    EXPECT_EQ(metric("1C06"), "EOBD (Europe)");
    EXPECT_EQ(metric("1C01"), "OBD-II (CARB)");
    EXPECT_EQ(metric("1C0E"), "Reserved (0E)");
    EXPECT_EQ(metric("1E01"), "Power take-off on");
    EXPECT_EQ(us("5104"), "Diesel");
}

TEST(LiveValue, SensorLayoutsOf13And1D)
{
    // The first cell holds the sensors of the low nibble, the second those of the high one.
    EXPECT_EQ(metric("1333"), "B1S1 B1S2");
    EXPECT_EQ(us("1333"), "B2S1 B2S2");
    EXPECT_EQ(metric("1D0F"), "B1S1 B1S2 B2S1 B2S2");
    EXPECT_EQ(us("1D30"), "B3S1 B3S2");
    EXPECT_EQ(metric("1300"), "none");
    EXPECT_EQ(describePid("16", "13"), "O2 voltage / fuel trim Bank 1 Sensor 3");
    EXPECT_EQ(describePid("16", ""), "O2 voltage / fuel trim Bank 1 Sensor 3");
    EXPECT_EQ(describePid("16", "1D"), "O2 voltage / fuel trim Bank 2 Sensor 1");
    EXPECT_EQ(describePid("18", "1D"), "O2 voltage / fuel trim Bank 3 Sensor 1");
    EXPECT_EQ(describePid("1B", "1D"), "O2 voltage / fuel trim Bank 4 Sensor 2");
    EXPECT_EQ(describePid("1B", "13"), "O2 voltage / fuel trim Bank 2 Sensor 4");
    EXPECT_EQ(describePid("2A", "1D"), "Wide O2 ratio / voltage Bank 4 Sensor 1");
    EXPECT_EQ(describePid("35", "13"), "Wide O2 ratio / current Bank 1 Sensor 2");
    EXPECT_EQ(describePid("0c", ""), "Engine speed");
}

TEST(LiveValue, UnknownShortOrForeignMessagesGiveEmptyText)
{
    EXPECT_EQ(metric("5F00"), "");            // deliberately not decoded
    EXPECT_EQ(metric("6000000000"), "");      // beyond the table
    EXPECT_EQ(metric("0C1A"), "");            // one byte of two
    EXPECT_EQ(metric("24800080"), "");        // three bytes of four
    EXPECT_EQ(formatLiveValue(ecu("410C1AF8"), 3), "");
    EXPECT_EQ(formatLiveValue(ecu("7F0112"), Metric), "");
    EXPECT_EQ(formatLiveValue("486B10", Metric), "");
    EXPECT_EQ(formatLiveValue("zz6B10410C1AF8", Metric), "");
    EXPECT_EQ(formatLiveValue("486B10410C1AF8C", Metric), "");
    EXPECT_EQ(formatLiveValue("", Metric), "");
    EXPECT_EQ(describePid("5F", ""), "");
    EXPECT_EQ(describePid("C", ""), "");
    EXPECT_EQ(describePid("0C0", ""), "");
}

TEST(LiveValue, OnlyTheFirstMessageOfAReplyIsRead)
{
    EXPECT_EQ(formatLiveValue(ecu("410D32") + ":" + ecu("410D64"), Metric), "50 km/h");
}

TEST(FreezeFrameValue, TheFrameNumberIsNotData)
{
    EXPECT_EQ(formatFreezeFrameValue(ecu("42050150"), Metric), "40 \u00B0C");
    EXPECT_EQ(formatFreezeFrameValue(ecu("420C001AF8"), Customary), "1726 rpm");
    EXPECT_EQ(formatFreezeFrameValue(ecu("4202000133"), Metric), "P0133");
    EXPECT_EQ(formatFreezeFrameValue(ecu("420C001A"), Metric), "");
    EXPECT_EQ(formatFreezeFrameValue(ecu("410C1AF8"), Metric), "");
}

namespace {

std::size_t displayWidth(const std::string& text)
{
    std::size_t n = 0;
    for (unsigned char c : text)
        n += (c & 0xC0) != 0x80;
    return n;
}

// Data that reaches the edges of every byte: all values where one byte is read, corners and a
// middle value for each byte where more are.
std::vector<std::vector<std::uint8_t>> sweep(int bytes)
{
    if (bytes == 1) {
        std::vector<std::vector<std::uint8_t>> all;
        for (int v = 0; v < 256; ++v)
            all.push_back({static_cast<std::uint8_t>(v)});
        return all;
    }
    const std::uint8_t corners[] = {0x00, 0x01, 0x7F, 0x80, 0xFE, 0xFF};
    std::vector<std::vector<std::uint8_t>> out{{}};
    for (int i = 0; i < bytes; ++i) {
        std::vector<std::vector<std::uint8_t>> next;
        for (const auto& head : out)
            for (std::uint8_t c : corners) {
                next.push_back(head);
                next.back().push_back(c);
            }
        out = std::move(next);
    }
    return out;
}

} // namespace

// A freeze-frame line gives the description 40 characters and each value 20: nothing a unit can
// send may lose its words to the cut. Range bitmaps list parameters and are shown by no column.
TEST(CellTexts, EveryParameterFitsItsColumnsWhateverTheUnitSends)
{
    for (const auto& row : pidRows()) {
        for (const char* layout : {"", "13", "1D"})
            EXPECT_LE(displayWidth(describePid(toHex(row.pid), layout)), 40u) << toHex(row.pid) << " " << layout;
        if (row.form == Form::SupportBitmap)
            continue;
        for (const auto& data : sweep(row.bytes))
            for (int selector : {Metric, Customary}) {
                const std::string text = pidValueText(row.pid, data.data(), data.size(), selector);
                EXPECT_FALSE(text.empty()) << toHex(row.pid);
                EXPECT_LE(displayWidth(text), 20u) << toHex(row.pid) << " " << toHex(data) << ": " << text;
            }
    }
}
