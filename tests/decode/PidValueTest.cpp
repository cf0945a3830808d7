#include "link/decode/PidValue.h"

#include "support/HexFrames.h"

#include <gtest/gtest.h>

using namespace kvx::link::decode;
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

TEST(LiveValue, OxygenSensorsNarrowAndWide)
{
    EXPECT_EQ(metric("145A80"), "0.450 V, 0.0 %");
    EXPECT_EQ(metric("14FF00"), "1.275 V, -100.0 %");
    EXPECT_EQ(metric("145AFF"), "0.450 V, trim not used");
    EXPECT_EQ(metric("2480008000"), "ratio 1.000, 4.000 V");
    EXPECT_EQ(metric("3480008000"), "ratio 1.000, 0.00 mA");
    EXPECT_EQ(metric("3400000000"), "ratio 0.000, -128.00 mA");
}

TEST(LiveValue, BitMappedParametersGiveWords)
{
    EXPECT_EQ(metric("00BE1FA813"), "01 03 04 05 06 07 0C 0D 0E 0F 10 11 13 15 1C 1F 20");
    EXPECT_EQ(metric("2000000000"), "none");
    EXPECT_EQ(metric("0183076504"), "MIL on, 3 codes, 1 of 7 monitors incomplete");
    EXPECT_EQ(metric("020000"), "none");
    EXPECT_EQ(metric("020301"), "P0301");
    EXPECT_EQ(metric("030200"), "Closed loop");
    EXPECT_EQ(metric("030102"), "1: Open loop (not yet warm); 2: Closed loop");
    EXPECT_EQ(metric("1233"), "Invalid (33)");
    EXPECT_EQ(metric("1C06"), "EOBD (Europe)");
    EXPECT_EQ(metric("1C0E"), "Reserved (0E)");
    EXPECT_EQ(metric("1E01"), "Power take-off active");
    EXPECT_EQ(us("5104"), "Diesel");
}

TEST(LiveValue, SensorLayoutsOf13And1D)
{
    EXPECT_EQ(metric("1333"), "B1S1 B1S2 B2S1 B2S2");
    EXPECT_EQ(metric("1D33"), "B1S1 B1S2 B3S1 B3S2");
    EXPECT_EQ(metric("1300"), "none");
    EXPECT_EQ(describePid("16", "13"), "O2 sensor voltage / fuel trim Bank 1 Sensor 3");
    EXPECT_EQ(describePid("16", ""), "O2 sensor voltage / fuel trim Bank 1 Sensor 3");
    EXPECT_EQ(describePid("16", "1D"), "O2 sensor voltage / fuel trim Bank 2 Sensor 1");
    EXPECT_EQ(describePid("1B", "1D"), "O2 sensor voltage / fuel trim Bank 4 Sensor 2");
    EXPECT_EQ(describePid("1B", "13"), "O2 sensor voltage / fuel trim Bank 2 Sensor 4");
    EXPECT_EQ(describePid("2A", "1D"), "Wide-range O2 sensor ratio / voltage Bank 4 Sensor 1");
    EXPECT_EQ(describePid("35", "13"), "Wide-range O2 sensor ratio / current Bank 1 Sensor 2");
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
