#include "BusTester.h"
#include "sim/FiveBaudDecoder.h"

#include <gtest/gtest.h>

#include <limits>

namespace kvx::sim::test {
namespace {

// Edges of a 5-baud byte as a tester makes them, each moved by skew.
std::vector<link::Micros> edgesOf(std::uint8_t address, link::Micros skew)
{
    std::vector<link::Micros> edges;
    bool low = true;
    for (int i = 1; i <= 9; ++i) {
        const bool bitLow = i <= 8 ? !((address >> (i - 1)) & 1) : false;
        if (bitLow != low) {
            edges.push_back(i * kFiveBaudBit + skew);
            low = bitLow;
        }
    }
    return edges;
}

TEST(FiveBaudDecoder, ReadsAnyRunOfEqualBitsWithinTheToleranceAndNothingOffTheGrid)
{
    for (int address : {0x33, 0x00, 0xFF, 0x55, 0x80}) {
        for (link::Micros skew : {link::ms(-9), link::ms(9)}) {
            const auto r = decodeFiveBaud(0, edgesOf(static_cast<std::uint8_t>(address), skew), link::ms(10));
            ASSERT_TRUE(r.address) << std::hex << address << " skew " << skew;
            EXPECT_EQ(*r.address, address);
            EXPECT_EQ(r.worstError, std::llabs(skew));
        }
    }
    EXPECT_FALSE(decodeFiveBaud(0, edgesOf(0x33, link::ms(15)), link::ms(10)).address);
    // 0x00 with the line never released: the stop bit would be low.
    EXPECT_FALSE(decodeFiveBaud(0, {}, link::ms(10)).address);
}

TEST(SlowInit, HandshakeBytesAndTheirTimingSitInsideTheWindows)
{
    BusTester t;
    const Bytes got = t.slowInit();
    ASSERT_EQ(got, (Bytes{0x55, 0x08, 0x08, 0xF7, 0xCC}));
    ASSERT_EQ(t.vehicle.record().inits.size(), 1u);
    const InitObservation& obs = t.vehicle.record().inits[0];
    EXPECT_EQ(obs.address, 0x33);
    EXPECT_TRUE(obs.accepted);

    const auto ecu = t.vehicle.record().bytes(TraceOrigin::Ecu);
    ASSERT_EQ(ecu.size(), 4u);
    const link::Micros byte = t.vehicle.byteTime();
    const link::Micros addressEnd = obs.lowEdge + 10 * kFiveBaudBit;
    const link::Micros w1 = ecu[0].time - byte - addressEnd;
    const link::Micros w2 = ecu[1].time - byte - ecu[0].time;
    const link::Micros w3 = ecu[2].time - byte - ecu[1].time;
    const link::Micros tester = t.vehicle.record().bytes(TraceOrigin::Tester).at(0).time;
    const link::Micros w4 = ecu[3].time - byte - tester;
    EXPECT_TRUE(w1 >= ms(60) && w1 <= ms(300)) << w1;
    EXPECT_TRUE(w2 >= ms(5) && w2 <= ms(20)) << w2;
    EXPECT_TRUE(w3 >= 0 && w3 <= ms(20)) << w3;
    EXPECT_TRUE(w4 >= ms(25) && w4 <= ms(50)) << w4;
    EXPECT_TRUE(t.vehicle.sessionOpen());
}

TEST(SlowInit, RefusesOtherAddressesSloppyBitsAndAWrongInvertedKeyByte)
{
    {
        BusTester t;
        t.sendFiveBaud(0x34);
        EXPECT_TRUE(t.readFor(ms(400)).empty());
        EXPECT_EQ(t.vehicle.record().inits.at(0).address, 0x34);
        EXPECT_FALSE(t.vehicle.record().inits.at(0).accepted);
    }
    {
        BusTester t;
        t.sendFiveBaud(0x33, ms(220)); // a 4.5 baud tester drifts off the grid
        EXPECT_TRUE(t.readFor(ms(400)).empty());
        EXPECT_GT(t.vehicle.record().inits.at(0).worstBitError, ms(10));
    }
    {
        BusTester t;
        t.sendFiveBaud(0x33);
        ASSERT_EQ(t.readFor(ms(400)).size(), 3u);
        t.clock.sleepFor(ms(30));
        t.wire->write(Bytes{0x08});
        EXPECT_EQ(t.readFor(ms(200)), Bytes{0x08}); // the echo, and no inverted address
        EXPECT_FALSE(t.vehicle.sessionOpen());
    }
}

TEST(FastInit, WrongPulseOrLateStartMessageIsIgnored)
{
    BusTester t;
    EXPECT_TRUE(t.fastInit({0xC1, 0x33, 0xF1, 0x81, 0x66}, ms(40)).empty());
    EXPECT_FALSE(t.vehicle.record().inits.at(0).note.empty());

    BusTester late;
    late.clock.sleepFor(ms(300));
    late.wire->setBreak(true);
    late.clock.sleepFor(ms(25));
    late.wire->setBreak(false);
    late.clock.sleepFor(ms(45));
    EXPECT_TRUE(late.request({0xC1, 0x33, 0xF1, 0x81, 0x66}).empty());
}

TEST(Bus, EchoesEachTesterByteAsItEndsAndIgnoresDamagedRequestsAndWrongRates)
{
    BusTester t;
    t.slowInit();
    const link::Micros sent = t.clock.now();
    const Bytes request{0x68, 0x6A, 0xF1, 0x01, 0x00, 0xC4};
    t.wire->write(request);
    const Bytes echo = t.readFor(ms(7));
    EXPECT_EQ(echo, request);
    const auto echoes = t.vehicle.record().bytes(TraceOrigin::Echo);
    ASSERT_GE(echoes.size(), 6u);
    for (std::size_t i = 0; i < 6; ++i)
        EXPECT_EQ(echoes[echoes.size() - 6 + i].time, sent + static_cast<link::Micros>(i + 1) * t.vehicle.byteTime());
    t.readUntilQuiet();
    EXPECT_TRUE(t.request({0x68, 0x6A, 0xF1, 0x01, 0x0D, 0x00}).empty()) << "a wrong checksum gets no answer";

    // Any other rate garbles, up to the largest a port could be asked for.
    for (int rate : {9600, 999999999, std::numeric_limits<int>::max()}) {
        t.wire->setBaud(rate);
        const Bytes garbled = t.iso({0x01, 0x0D});
        EXPECT_TRUE(garbled.empty() || garbled[0] != 0x48) << rate;
    }
    t.wire->setBaud(10400);
    EXPECT_EQ(t.iso({0x01, 0x0D}).at(0), 0x48);
}

TEST(Bus, RepliesKeepP2BeforeAndBetweenTheUnitsAndP1BetweenTheirBytes)
{
    BusTester t;
    t.slowInit();
    t.iso({0x01, 0x00});
    const link::Micros byte = t.vehicle.byteTime();
    const link::Micros requestEnd = t.vehicle.record().bytes(TraceOrigin::Tester).back().time;
    std::vector<BusEvent> reply;
    for (const auto& e : t.vehicle.record().bytes(TraceOrigin::Ecu))
        if (e.time > requestEnd)
            reply.push_back(e);
    ASSERT_EQ(reply.size(), 20u) << "two frames of ten bytes";
    const link::Micros p2 = reply[0].time - byte - requestEnd;
    EXPECT_TRUE(p2 >= ms(25) && p2 <= ms(50)) << p2;
    for (std::size_t i = 1; i < reply.size(); ++i) {
        const link::Micros gap = reply[i].time - byte - reply[i - 1].time;
        EXPECT_LE(gap, i == 10 ? ms(50) : ms(20)) << i;
        EXPECT_GE(gap, i == 10 ? ms(25) : 0) << i;
    }
}

} // namespace
} // namespace kvx::sim::test
