#include "link/decode/ModeSixDecoder.h"

#include <gtest/gtest.h>

using kvx::link::ModeSixDecoder;

TEST(ModeSixDecoder, NamesTheTestsOfAKnownVehicle)
{
    const ModeSixDecoder decoder;
    EXPECT_EQ(decoder.Describe("Acura", "1997", "01", "01", 3, 1, "-"), "Catalyst efficiency - Bank 1");
    EXPECT_EQ(decoder.Describe(" ACURA", "1997 ", "03", "05", 3, 1, "-"), "O2 sensor heater current - Bank 2 Sensor 1");
    EXPECT_EQ(decoder.Describe("acura", "1997", "07", "06", 4, 1, "/"), "Misfire / Cylinder 6");
    // One TID and component, two checks told apart by the limit type.
    EXPECT_EQ(decoder.Describe("Acura", "1997", "04", "02", 4, 1, "-"), "Rear O2 sensor low voltage - Bank 1 Sensor 2");
    EXPECT_EQ(decoder.Describe("Acura", "1997", "04", "02", 3, 1, "-"), "Rear O2 sensor high voltage - Bank 1 Sensor 2");
}

TEST(ModeSixDecoder, UnknownVehicleTestOrUnitGivesTheFallback)
{
    const ModeSixDecoder decoder;
    EXPECT_EQ(decoder.Describe("Honda", "1997", "01", "01", 3, 1, "-"), "");
    EXPECT_EQ(decoder.Describe("Acura", "1998", "01", "01", 3, 1, "-"), "");
    EXPECT_EQ(decoder.Describe("Acura", "1997", "01", "09", 3, 1, "-"), "");
    EXPECT_EQ(decoder.Describe("Acura", "1997", "7F", "01", 3, 1, "-"), "");
    EXPECT_EQ(decoder.Describe("Acura", "1997", "01", "01", 3, 2, "-"), "");
    EXPECT_EQ(decoder.Describe("", "", "01", "01", 3, 1, "-", "unknown test"), "unknown test");
}
