#include "obd/O2SensorNames.h"
#include "obd/TextColumns.h"

#include <gtest/gtest.h>

namespace kvx::obd {
namespace {

// The four-bank layout shares the numbers 05 to 08 with Bank 2; the sensor tests are asked by them.
TEST(O2SensorNumber, FourBankNamesShareTheNumbersOfBank2)
{
    EXPECT_EQ(O2SensorNumber("Bank 2 Sensor 4"), "08");
    EXPECT_EQ(O2SensorNumber("Bank 3 Sensor 1"), "05");
    EXPECT_EQ(O2SensorNumber("Bank 3 Sensor 2"), "06");
    EXPECT_EQ(O2SensorNumber("Bank 4 Sensor 1"), "07");
    EXPECT_EQ(O2SensorNumber("Bank 4 Sensor 2"), "08");
    EXPECT_EQ(O2SensorNumber("Bank 3 Sensor 3"), "");
}

// Every text the program puts in a column fits it today; a longer one is cut, never spills over.
TEST(PadOrCut, CutsAtTheWidthInCharacters)
{
    EXPECT_EQ(PadOrCut("Engine Coolant Temperature", 6), "Engine");
    EXPECT_EQ(PadOrCut("1234\xC2\xB0" "C", 5), "1234\xC2\xB0");
}

} // namespace
} // namespace kvx::obd
