#include "link/Framing.h"
#include "link/KeyBytes.h"
#include "link/LinkError.h"

#include <gtest/gtest.h>

using namespace kvx::link;

namespace {

Bytes hex(const char* text) { return *fromHex(text); }

std::vector<TimedByte> timed(const Bytes& bytes, Micros step = ms(1))
{
    std::vector<TimedByte> out;
    Micros t = 0;
    for (auto b : bytes)
        out.push_back({b, t += step});
    return out;
}

// A frame with its checksum appended.
std::string framed(const std::string& text)
{
    return text + toHex(checksum(*fromHex(text)));
}

std::vector<TimedByte> concat(std::initializer_list<const char*> frames)
{
    Bytes all;
    for (auto f : frames) {
        const Bytes b = hex(f);
        all.insert(all.end(), b.begin(), b.end());
    }
    return timed(all);
}

} // namespace

TEST(Encoding, GenericRequestsGetLengthAndChecksumAsTheSessionAllows)
{
    const HeaderForm both;
    EXPECT_EQ(toHex(encodeRequest(LineKind::Iso9141, hex("686AF10100"), both)), "686AF10100C4");
    EXPECT_EQ(toHex(encodeRequest(LineKind::Kwp, hex("C033F10100"), both)), "C233F10100E7");
    HeaderForm byteOnly;
    byteOnly.lengthInFormat = false;
    EXPECT_EQ(toHex(encodeRequest(LineKind::Kwp, hex("C033F10100"), byteOnly)), "C033F1020100E7");
    EXPECT_THROW(encodeRequest(LineKind::Kwp, hex("C033F1"), both), LinkError);

    // Frame edges: seven bytes after an ISO 9141 header fit, eight do not; KWP carries up to 63
    // in the format byte and from 64 on a length byte of its own, or refuses when the unit takes none.
    EXPECT_EQ(toHex(encodeRequest(LineKind::Iso9141, hex("686AF101020304050607"), both)), "686AF101020304050607DF");
    EXPECT_THROW(encodeRequest(LineKind::Iso9141, hex("686AF10102030405060708"), both), LinkError);
    const std::string data63(126, '1'), data64(128, '1');
    EXPECT_EQ(toHex(encodeRequest(LineKind::Kwp, hex(("C033F1" + data63).c_str()), both)).substr(0, 8), "FF33F111");
    EXPECT_EQ(toHex(encodeRequest(LineKind::Kwp, hex(("C033F1" + data64).c_str()), both)).substr(0, 8), "C033F140");
    HeaderForm formatOnly;
    formatOnly.lengthByte = false;
    EXPECT_THROW(encodeRequest(LineKind::Kwp, hex(("C033F1" + data64).c_str()), formatOnly), LinkError);
}

TEST(Encoding, BodiesAreAddressedAndTheirLengthChecked)
{
    const Bytes body = hex("052211000401");
    EXPECT_EQ(toHex(encodeBody(HeaderForm{}, 0x10, 0xFC, body)), "8510FC2211000401C9");
    HeaderForm byteOnly;
    byteOnly.lengthInFormat = false;
    EXPECT_EQ(toHex(encodeBody(byteOnly, 0x10, 0xFC, body)), "8010FC052211000401C9");
    EXPECT_THROW(encodeBody(HeaderForm{}, 0x10, 0xFC, hex("0522110004")), LinkError) << "length byte says 5, 4 follow";
    EXPECT_THROW(encodeBody(HeaderForm{}, 0x10, 0xFC, hex("062211000401")), LinkError);
    const Bytes longBody = hex(("40" + std::string(128, '2')).c_str());
    EXPECT_EQ(toHex(encodeBody(HeaderForm{}, 0x10, 0xFC, longBody)).substr(0, 10), "8010FC4022");
}

TEST(KeyBytes, DecideTimingAndHeaderForm)
{
    EXPECT_EQ(interpretKeyBytes(Iso9141Slow, 0x08, 0x08).p2Min, ms(25));
    EXPECT_EQ(interpretKeyBytes(Iso9141Slow, 0x94, 0x94).p2Min, 0);
    EXPECT_FALSE(interpretKeyBytes(Iso9141Slow, 0xEF, 0x8F).accepted);
    EXPECT_FALSE(interpretKeyBytes(Kwp2000Slow, 0x08, 0x08).accepted);
    // KB1 differs from KB2 and its parity bit is ignored: EF and 6F mean the same.
    const auto full = interpretKeyBytes(Kwp2000Slow, 0xEF, 0x8F);
    const auto noParity = interpretKeyBytes(Kwp2000Fast, 0x6F, 0x8F);
    EXPECT_TRUE(full.accepted && full.kwp && noParity.accepted);
    EXPECT_EQ(full.form.addresses, noParity.form.addresses);
    // AL1 only (length byte), HB0 only (no addresses), TP set (P2min 0).
    const auto byteOnly = interpretKeyBytes(Kwp2000Fast, 0xD6, 0x8F);
    EXPECT_FALSE(byteOnly.form.lengthInFormat);
    EXPECT_TRUE(byteOnly.form.lengthByte);
    EXPECT_FALSE(byteOnly.form.addresses);
    EXPECT_EQ(byteOnly.p2Min, 0);
}

TEST(Cutting, KwpFramesByFormatAndLengthByte)
{
    const auto cut = cutFrames(LineKind::Kwp, concat({"83F110C1EF8FC3", "80F1100641008008001060", "02410043"}));
    ASSERT_EQ(cut.frames.size(), 2u);
    EXPECT_EQ(toHex(cut.frames[1]), "80F1100641008008001060");
    EXPECT_EQ(toHex(bodyOf(LineKind::Kwp, cut.frames[1])), "06410080080010DF");
    EXPECT_EQ(toHex(bodyOf(LineKind::Kwp, hex("87FC106211008000000187"))), "0762110080000001FB")
        << "a reply with addresses reads as one without";
    EXPECT_EQ(cut.dropped.size(), 1u) << "the one-byte header form names no one: not ours unless the session uses it";

    const ReplyAddressing bodies{0xFC, true};
    const auto nissan = cutFrames(LineKind::Kwp, concat({"02410043", "87FC106211008000000187"}), bodies);
    ASSERT_EQ(nissan.frames.size(), 2u);
    EXPECT_EQ(toHex(nissan.frames[0]), "02410043");
}

TEST(Cutting, LineNoiseNeverMakesAFrame)
{
    // A stray C1 reads as a five-byte frame whose checksum holds, swallowing the real reply's head.
    const auto cut = cutFrames(LineKind::Kwp, concat({"D7C1", "87F110490001C000000092"}));
    ASSERT_EQ(cut.frames.size(), 1u);
    EXPECT_EQ(toHex(cut.frames[0]), "87F110490001C000000092");

    // Frames for another tester, from a tester, or carrying a request's service are not replies.
    for (const char* notOurs : {"82FC104100", "82F1F14100", "82F1100100"}) {
        const auto c = cutFrames(LineKind::Kwp, concat({framed(notOurs).c_str()}));
        EXPECT_TRUE(c.frames.empty()) << notOurs;
    }

    // Noise that passes every test still loses to the longer cut through the real frame behind it.
    // (C1 F1 86 F1 29 is a whole reply to F1 from unit 86.)
    const std::string real = framed("86F1294100BE1FA813");
    const auto swallowing = cutFrames(LineKind::Kwp, concat({"C1F1", real.c_str()}));
    ASSERT_EQ(swallowing.frames.size(), 1u);
    EXPECT_EQ(toHex(swallowing.frames[0]), real);
}

TEST(Cutting, BadChecksumAndNoiseAreDroppedWithoutLosingTheGoodFrames)
{
    const auto cut = cutFrames(LineKind::Kwp, concat({"3A77", "86F11841008008001069", "86F1104100BE3FB81390"}));
    ASSERT_EQ(cut.frames.size(), 1u);
    EXPECT_EQ(toHex(cut.frames[0]), "86F1104100BE3FB81390");
    ASSERT_FALSE(cut.dropped.empty());
    EXPECT_EQ(cut.dropped.front().bytes.size(), 12u) << "the noise and the damaged frame, nothing of the good one";

    const auto tail = cutFrames(LineKind::Kwp, concat({"86F1104100BE3FB81390", "86F118"}));
    EXPECT_EQ(tail.frames.size(), 1u);
    EXPECT_TRUE(tail.incompleteTail);
}

TEST(Cutting, FrameEdges)
{
    // ISO 9141: a service and six data bytes fill the longest frame; one more is no frame.
    const std::string longest = framed("486B1049010203040506");
    EXPECT_EQ(cutFrames(LineKind::Iso9141, concat({longest.c_str()})).frames.size(), 1u);
    EXPECT_TRUE(cutFrames(LineKind::Iso9141, concat({framed("486B104901020304050607").c_str()})).frames.empty());
    // The shortest frames: header, service, checksum.
    EXPECT_EQ(cutFrames(LineKind::Iso9141, concat({framed("486B1044").c_str()})).frames.size(), 1u);
    EXPECT_EQ(cutFrames(LineKind::Kwp, concat({framed("81F11044").c_str()})).frames.size(), 1u);
    EXPECT_EQ(cutFrames(LineKind::Kwp, concat({framed("0144").c_str()}), {0xF1, true}).frames.size(), 1u);
    // KWP: 64 bytes and more need the length byte; a length byte of 0 carries no service.
    const std::string big = framed("80F11040" + std::string(128, '4'));
    const auto bigCut = cutFrames(LineKind::Kwp, concat({big.c_str(), framed("80F11000").c_str()}));
    ASSERT_EQ(bigCut.frames.size(), 1u);
    EXPECT_EQ(bigCut.frames[0].size(), 69u);
    EXPECT_EQ(bigCut.dropped.size(), 1u);
}

TEST(Cutting, Iso9141FramesByChecksumAndNextHeader)
{
    const auto cut = cutFrames(LineKind::Iso9141, concat({"486B18410080080010A4", "486B104100BE3FB813CC", "486B107F011255"}));
    ASSERT_EQ(cut.frames.size(), 3u);
    EXPECT_EQ(cut.frames[0][2], 0x18);
    EXPECT_EQ(cut.frames[1][2], 0x10);
    const auto bad = cutFrames(LineKind::Iso9141, concat({"486B18410080080010A5", "486B104100BE3FB813CC"}));
    ASSERT_EQ(bad.frames.size(), 1u);
    EXPECT_EQ(bad.frames[0][2], 0x10);
    EXPECT_EQ(bad.dropped.front().reason, "bad checksum");

    // Here the first frame's checksum also holds one byte later, across the next frame's 48; the
    // next header wins over the longer cut.
    const auto damagedSecond = cutFrames(LineKind::Iso9141, concat({"486B18410080080010A4", "486B104100BE3FB813CD"}));
    ASSERT_EQ(damagedSecond.frames.size(), 1u);
    EXPECT_EQ(toHex(damagedSecond.frames[0]), "486B18410080080010A4");
}

TEST(Cutting, ResponsePendingIsRecognisedOnBothLines)
{
    EXPECT_TRUE(isResponsePending(LineKind::Kwp, hex("83F1107F03787E")));
    EXPECT_TRUE(isResponsePending(LineKind::Iso9141, hex("486B107F0378BD")));
    EXPECT_FALSE(isResponsePending(LineKind::Kwp, hex("83F1107F031218")));
}
