#include "link/decode/TestResults.h"

#include "support/HexFrames.h"

#include <gtest/gtest.h>

using namespace kvx::link::decode;
using kvx::test::ecu;

TEST(OxygenTest, ValueMinimumAndMaximumScaledByTheTid)
{
    const std::string voltage = ecu("4501015A00FF");
    EXPECT_EQ(formatOxygenTest(voltage, TestValue), "0.450 V");
    EXPECT_EQ(formatOxygenTest(voltage, TestMinimum), "0.000 V");
    EXPECT_EQ(formatOxygenTest(voltage, TestMaximum), "1.275 V");
    EXPECT_EQ(formatOxygenTest(ecu("4505011900FF"), TestValue), "0.100 s");
    EXPECT_EQ(formatOxygenTest(ecu("4509011900FF"), TestValue), "1.00 s");
    EXPECT_EQ(formatOxygenTest(ecu("450A05FF0000"), TestValue), "10.20 s");
}

TEST(OxygenTest, ManufacturerTidsShowTheRawCountAndRangeMarkersTheSupportedList)
{
    EXPECT_EQ(formatOxygenTest(ecu("458101250010"), TestValue), "37");
    EXPECT_EQ(oxygenTestName(0x81), "");
    EXPECT_EQ(oxygenTestName(0x01), "Rich to lean sensor threshold voltage");
    EXPECT_EQ(formatOxygenTest(ecu("450001FFC00000"), TestValue), "01 02 03 04 05 06 07 08 09 0A");
    EXPECT_EQ(formatOxygenTest(ecu("450001FFC00000"), TestMinimum), "");
}

TEST(OxygenTest, MissingNumbersAndForeignMessagesGiveEmptyText)
{
    EXPECT_EQ(formatOxygenTest(ecu("4501015A"), TestValue), "0.450 V");
    EXPECT_EQ(formatOxygenTest(ecu("4501015A"), TestMinimum), "");
    EXPECT_EQ(formatOxygenTest(ecu("4501015A00FF"), 4), "");
    EXPECT_EQ(formatOxygenTest(ecu("4501015A00FF"), 0), "");
    EXPECT_EQ(formatOxygenTest(ecu("4601015A00FF"), TestValue), "");
    EXPECT_EQ(formatOxygenTest(ecu("45"), TestValue), "");
}

TEST(MonitorTest, ComponentBitSevenIsTheLimitType)
{
    const auto minimum = formatMonitorTest(ecu("4601850064003C"));
    EXPECT_EQ(minimum.tid, "01");
    EXPECT_EQ(minimum.component, "05");
    EXPECT_EQ(minimum.limitType, "Minimum");
    EXPECT_EQ(minimum.typeCode, 4);
    EXPECT_EQ(minimum.result, "100");
    EXPECT_EQ(minimum.limit, "60");
    EXPECT_EQ(minimum.passFail, "PASS");

    const auto maximum = formatMonitorTest(ecu("4601050064003C"));
    EXPECT_EQ(maximum.component, "05");
    EXPECT_EQ(maximum.limitType, "Maximum");
    EXPECT_EQ(maximum.typeCode, 3);
    EXPECT_EQ(maximum.passFail, "FAIL");
}

TEST(MonitorTest, PassFailAtTheLimitAndAcrossTheFullRange)
{
    EXPECT_EQ(formatMonitorTest(ecu("46028112341234")).passFail, "PASS");
    EXPECT_EQ(formatMonitorTest(ecu("46020112341234")).passFail, "PASS");
    EXPECT_EQ(formatMonitorTest(ecu("4602810000FFFF")).passFail, "FAIL");
    EXPECT_EQ(formatMonitorTest(ecu("46020100000000")).passFail, "PASS");
    EXPECT_EQ(formatMonitorTest(ecu("460201FFFFFFFE")).passFail, "FAIL");
    EXPECT_EQ(formatMonitorTest(ecu("460201FFFFFFFE")).result, "65535");
    EXPECT_EQ(formatMonitorTest(ecu("4602FF00000000")).component, "7F");
}

TEST(MonitorTest, ShortOrForeignMessagesLeaveEveryFieldEmpty)
{
    for (const std::string& m : {ecu("4601850064"), ecu("4501850064003C"), std::string("4601"), std::string()}) {
        const auto t = formatMonitorTest(m);
        EXPECT_EQ(t.tid + t.component + t.limitType + t.limit + t.result + t.passFail, "") << m;
        EXPECT_EQ(t.typeCode, 0);
    }
}
