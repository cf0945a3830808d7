#include "obd/O2SensorList.h"
#include "obd/O2SensorNames.h"
#include "obd/TextColumns.h"

#include <gtest/gtest.h>

namespace kvx::obd {
namespace {

TEST(O2SensorNumber, TwoBankNamesWinOverTheFourBankNumbering)
{
    EXPECT_EQ(O2SensorNumber("Bank 1 Sensor 1"), "01");
    EXPECT_EQ(O2SensorNumber("Bank 1 Sensor 4"), "04");
    EXPECT_EQ(O2SensorNumber("Bank 2 Sensor 1"), "05");
    EXPECT_EQ(O2SensorNumber("Bank 2 Sensor 4"), "08");
    // The four-bank layout shares the numbers 05 to 08 with Bank 2.
    EXPECT_EQ(O2SensorNumber("Bank 3 Sensor 1"), "05");
    EXPECT_EQ(O2SensorNumber("Bank 3 Sensor 2"), "06");
    EXPECT_EQ(O2SensorNumber("Bank 4 Sensor 1"), "07");
    EXPECT_EQ(O2SensorNumber("Bank 4 Sensor 2"), "08");
    EXPECT_EQ(O2SensorNumber("Bank 3 Sensor 3"), "");
    EXPECT_EQ(O2SensorNumber("bank 1 sensor 1"), "");
}

TEST(PresentO2Sensors, LayoutBitsNameSensorsThatTheRequestsCanNumber)
{
    using Names = std::vector<std::string>;
    EXPECT_EQ(PresentO2Sensors(0x21, false), (Names{"Bank 1 Sensor 1", "Bank 2 Sensor 2"}));
    EXPECT_EQ(PresentO2Sensors(0x84, true), (Names{"Bank 2 Sensor 1", "Bank 4 Sensor 2"}));
    for (bool fourBanks : {false, true})
        for (const std::string& name : PresentO2Sensors(0xFF, fourBanks))
            EXPECT_FALSE(O2SensorNumber(name).empty()) << name;
}

TEST(PadOrCut, PadsCutsAndCountsCharactersNotBytes)
{
    EXPECT_EQ(PadOrCut("RPM", 6), "RPM   ");
    EXPECT_EQ(PadOrCut("Engine Coolant Temperature", 6), "Engine");
    EXPECT_EQ(PadOrCut("", 3), "   ");
    // "°" is two bytes; the column is still 6 characters wide.
    EXPECT_EQ(PadOrCut("90 \xC2\xB0" "C", 6), "90 \xC2\xB0" "C ");
    EXPECT_EQ(PadOrCut("12345\xC2\xB0", 5), "12345");
    EXPECT_EQ(PadOrCut("1234\xC2\xB0" "C", 5), "1234\xC2\xB0");
}

} // namespace
} // namespace kvx::obd
