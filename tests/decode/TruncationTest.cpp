#include "link/decode/InfoValue.h"
#include "link/decode/PidTable.h"
#include "link/decode/PidValue.h"
#include "link/decode/ServiceReply.h"
#include "link/decode/TestResults.h"
#include "link/decode/TroubleCodes.h"
#include "link/decode/Vin.h"

#include "support/HexFrames.h"

#include <gtest/gtest.h>

using namespace kvx::link;
using namespace kvx::link::decode;

// Every prefix of every kind of message goes through every decoder: a cut-off frame must give a
// text (usually empty), never a read past its end. Run under the sanitizer build this is the net
// that catches an index off by one.
TEST(Truncation, EveryPrefixOfEveryMessageDecodesSafely)
{
    std::vector<std::string> messages = {"4902010000003148", "43013303010420", "4501015A00FF",
                                         "4601850064003C", "7F0422", "44", "42050150", "4500010000000000"};
    for (const auto& row : pidRows())
        messages.push_back("41" + toHex(row.pid) + std::string(row.bytes * 2u, 'F'));
    for (const auto& body : messages) {
        const std::string full = kvx::test::ecu(body);
        for (std::size_t n = 0; n <= full.size(); ++n) {
            const std::string cut = full.substr(0, n);
            for (int selector = 0; selector <= 3; ++selector) {
                formatLiveValue(cut, selector);
                formatFreezeFrameValue(cut, selector);
                formatOxygenTest(cut, selector);
            }
            formatTroubleCodes(cut, 1);
            formatMonitorTest(cut);
            formatServiceReply(cut);
            formatInfoValue(cut);
            formatVin(cut);
        }
        // Whole messages of the right service do decode, so the sweep above is not vacuous.
        if (body.rfind("41", 0) == 0) {
            EXPECT_NE(formatLiveValue(full, Metric), "") << full;
        }
    }
}
