#include "obd/Connection.h"

#include <gtest/gtest.h>

namespace kvx::obd {
namespace {

TEST(NegativeResponse, KwpFormatBytesWith7FAtCharactersNineAndTen)
{
    // Format byte 80 with a separate length byte puts the refusal's 7F at characters 9-10.
    EXPECT_TRUE(IsNegativeResponse("80F110037F011296"));
    EXPECT_TRUE(IsNegativeResponse("C0F110037F0112D6"));
    // The short form's test reads the same place, where the refused service stands.
    EXPECT_TRUE(IsNegativeResponse("83F1107F7F1296"));
    EXPECT_TRUE(IsNegativeResponse("C3F1107F7F12D6"));
    EXPECT_FALSE(IsNegativeResponse("83F1107F011296"));
    // A positive answer, an ISO 9141 refusal and short or empty replies pass.
    EXPECT_FALSE(IsNegativeResponse("86F1104100BE1FA813D8"));
    EXPECT_FALSE(IsNegativeResponse("486B107F7F1296"));
    EXPECT_FALSE(IsNegativeResponse("80F1107F"));
    EXPECT_FALSE(IsNegativeResponse(""));
}

TEST(FirstReply, FourteenCharactersOrFewerIsIncomplete)
{
    EXPECT_EQ(FirstReplyProblem("486B104100BE1F"), kIncompleteReplyText);
    EXPECT_EQ(FirstReplyProblem("486B104100BE1FA"), "");
    // Length comes first: an empty reply reports the P3 advice as well.
    EXPECT_EQ(FirstReplyProblem(""), kIncompleteReplyText);
}

} // namespace
} // namespace kvx::obd
