#include "sim/KLineFrames.h"

#include <gtest/gtest.h>

namespace kvx::sim {
namespace {

using link::Bytes;
using link::LineKind;

TEST(KLineFrames, RequestSizesFromTheHeaderOrTheService)
{
    struct Case {
        LineKind protocol;
        Bytes start;
        std::optional<std::size_t> size;
    };
    const Case cases[] = {
        {LineKind::Kwp, {0xC2}, 6},             // length in the format byte, with addresses
        {LineKind::Kwp, {0x02}, 4},             // no addresses
        {LineKind::Kwp, {0x80, 0x10, 0xF1}, std::nullopt},
        {LineKind::Kwp, {0x80, 0x10, 0xF1, 0x02}, 7}, // separate length byte
        {LineKind::Iso9141, {0x68, 0x6A, 0xF1}, std::nullopt},
        {LineKind::Iso9141, {0x68, 0x6A, 0xF1, 0x03}, 5},
        {LineKind::Iso9141, {0x68, 0x6A, 0xF1, 0x02}, 7},
        {LineKind::Iso9141, {0x68, 0x6A, 0xF1, 0x08}, std::nullopt}, // left to the gap after it
    };
    for (const auto& c : cases)
        EXPECT_EQ(expectedFrameSize(c.protocol, c.start), c.size) << link::toHex(c.start);
}

TEST(KLineFrames, RequestsParsedAndRepliesFramedPerProtocol)
{
    const auto physical = parseRequest(LineKind::Kwp, {0x82, 0x10, 0xFC, 0x21, 0x01, 0xB0});
    ASSERT_TRUE(physical);
    EXPECT_FALSE(physical->functional);
    EXPECT_EQ(physical->target, 0x10);
    EXPECT_EQ(physical->source, 0xFC);
    EXPECT_EQ(physical->payload, (Bytes{0x21, 0x01}));
    EXPECT_FALSE(parseRequest(LineKind::Kwp, {0x82, 0x10, 0xFC, 0x21, 0x01, 0xB1}));
    EXPECT_FALSE(parseRequest(LineKind::Iso9141, {0xC1, 0x33, 0xF1, 0x01, 0xE6}));

    EXPECT_EQ(replyFrame(LineKind::Iso9141, 0x10, 0xF1, {0x44}), (Bytes{0x48, 0x6B, 0x10, 0x44, 0x07}));
    const Bytes longPayload(70, 0x01);
    const Bytes framed = replyFrame(LineKind::Kwp, 0x10, 0xFC, longPayload);
    EXPECT_EQ(Bytes(framed.begin(), framed.begin() + 4), (Bytes{0x80, 0xFC, 0x10, 70}));
    EXPECT_EQ(framed.size(), 4u + 70u + 1u);
}

} // namespace
} // namespace kvx::sim
