#include "link/decode/TroubleCodes.h"

#include "support/HexFrames.h"

#include <gtest/gtest.h>

using namespace kvx::link::decode;
using kvx::test::ecu;

TEST(TroubleCode, LetterComesFromTheTwoHighBits)
{
    EXPECT_EQ(troubleCode(0x01, 0x33), "P0133");
    EXPECT_EQ(troubleCode(0x41, 0x23), "C0123");
    EXPECT_EQ(troubleCode(0x81, 0x23), "B0123");
    EXPECT_EQ(troubleCode(0xC1, 0x23), "U0123");
    EXPECT_EQ(troubleCode(0x3F, 0xFF), "P3FFF");
    EXPECT_EQ(troubleCode(0xFF, 0xAB), "U3FAB");
}

TEST(TroubleCode, FillerPairsAreDroppedWhereverTheyStand)
{
    EXPECT_EQ(formatTroubleCodes(ecu("43013300000000"), 1), "P0133");
    EXPECT_EQ(formatTroubleCodes(ecu("43000003010420"), 1), "P0301P0420");
    EXPECT_EQ(formatTroubleCodes(ecu("43000000000000"), 1), "");
    EXPECT_EQ(formatTroubleCodes(ecu("4303000400"), 1), "P0300P0400");  // only whole zero pairs are filler
}

TEST(TroubleCode, CountSaysHowManyMessagesOfTheReplyAreRead)
{
    const std::string reply = ecu("43030103020303") + ":" + ecu("47C10000000000");
    EXPECT_EQ(formatTroubleCodes(reply, 1), "P0301P0302P0303");
    EXPECT_EQ(formatTroubleCodes(reply, 2), "P0301P0302P0303U0100");
    EXPECT_EQ(formatTroubleCodes(reply, 9), "P0301P0302P0303U0100");
    EXPECT_EQ(formatTroubleCodes(reply, 0), "");
}

TEST(TroubleCode, OddOrForeignMessagesGiveNothing)
{
    EXPECT_EQ(formatTroubleCodes(ecu("410C1AF8"), 1), "");
    EXPECT_EQ(formatTroubleCodes(ecu("7F0311"), 1), "");
    EXPECT_EQ(formatTroubleCodes(ecu("430133AB"), 1), "P0133");  // a lone trailing byte is not half a code
    EXPECT_EQ(formatTroubleCodes("486B104301", 1), "");
    EXPECT_EQ(formatTroubleCodes("not hex at all", 1), "");
    EXPECT_EQ(formatTroubleCodes("", 1), "");
}
