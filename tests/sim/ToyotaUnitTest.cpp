#include "SupportBits.h"
#include "link/ReplyText.h"
#include "link/SimBench.h"
#include "link/decode/ToyotaDecoder.h"
#include "link/decode/ToyotaItems.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace kvx::sim::test {
namespace {

// An ISO 9141-2 session with both units, as the generic negotiation opens it.
struct GenericBench : kvx::test::SimBench {
    GenericBench() { started = wake(1); }
    // The engine unit's message of a service 01 reply, "" when it did not answer.
    std::string engine(const std::string& pid)
    {
        for (const std::string& message : link::splitReply(ask("686AF101" + pid)))
            if (link::sourceText(message) == "10")
                return message;
        return {};
    }
    bool started = false;
};

std::string hex2(int v) { return link::toHex(static_cast<std::uint8_t>(v)); }

// The parameters the bitmap of a service 01 message marks.
std::set<int> marked(const std::string& message, int base)
{
    return markedBy(message.size() >= 20 ? message.substr(10, 8) : "", base);
}

} // namespace

TEST(ToyotaUnit, BitmapsB0C0E0ReportTheParametersTheDecoderNames)
{
    GenericBench bench;
    ASSERT_TRUE(bench.started);
    std::set<int> present;
    for (int base : {0xB0, 0xC0, 0xE0}) {
        const auto got = marked(bench.engine(hex2(base)), base);
        EXPECT_FALSE(got.empty()) << hex2(base);
        present.insert(got.begin(), got.end());
    }
    std::set<int> named;
    for (const auto& item : link::decode::toyotaItems())
        named.insert(item.parameter);
    for (int p : present) {
        // D0 and E0 close the B0 and C0 ranges as pointers to the next bitmap.
        if (p == 0xD0 || p == 0xE0)
            continue;
        EXPECT_TRUE(named.count(p)) << hex2(p) << " is reported but has no name";
    }
    for (int p : named)
        EXPECT_TRUE(present.count(p)) << hex2(p) << " is named but not reported";
}

TEST(ToyotaUnit, GenericDiscoveryClaimsNothingAboveItsRanges)
{
    GenericBench bench;
    ASSERT_TRUE(bench.started);
    const auto above40 = marked(bench.engine("40"), 0x40);
    EXPECT_FALSE(above40.empty());
    EXPECT_FALSE(above40.count(0x60)) << "no pointer to a range 60";
    for (const char* pid : {"60", "80", "A0"})
        EXPECT_EQ(bench.engine(pid), "") << pid;
    EXPECT_EQ(bench.engine("B0").substr(6, 4), "41B0");
}

} // namespace kvx::sim::test
