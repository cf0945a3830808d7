#include "link/decode/TroubleCodes.h"

#include "support/HexFrames.h"

#include <gtest/gtest.h>

using namespace kvx::link::decode;
using kvx::test::ecu;

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
