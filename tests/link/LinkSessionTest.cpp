#include "SimBench.h"
#include "support/BusTiming.h"

#include "link/LinkError.h"
#include "link/ReplyText.h"

#include <gtest/gtest.h>

using namespace kvx;
using link::LinkError;
using link::ms;
using sim::Fault;
using link::TraceOrigin;

namespace {

sim::VehicleConfig withRequestFault(int request, Fault f, link::LineKind slow = link::LineKind::Iso9141)
{
    sim::VehicleConfig c;
    c.faults.requests[request] = f;
    c.slowInit = slow;
    return c;
}

} // namespace

TEST(WakeUp, FiveBaudAddressHoldsItsBitsAndTheHandshakeItsWindows)
{
    // The inter-byte delay is a margin beyond W4min: whatever the setting, W4 stays in its window.
    for (int interByte : {-100, 0, 10, 40, 30000}) {
        test::SimBench bench;
        bench.link.SetInterByteDelay(interByte);
        ASSERT_TRUE(bench.wake(1)) << interByte;
        EXPECT_EQ(bench.result, "0808");
        const auto& init = bench.vehicle.record().inits.back();
        EXPECT_TRUE(init.accepted) << init.note;
        EXPECT_LE(init.worstBitError, ms(2));
        // 0x33 has two pairs of zero bits: held as single breaks, so 5 edges after the start edge.
        EXPECT_EQ(init.bitEdges.size(), 5u);
        const auto kb2 = bench.bytes(TraceOrigin::Ecu).at(2);
        const auto inverted = bench.bytes(TraceOrigin::Tester).at(0);
        EXPECT_EQ(inverted.byte, 0xF7);
        const auto w4 = inverted.time - bench.vehicle.byteTime() - kb2.time;
        EXPECT_GE(w4, ms(25)) << interByte;
        EXPECT_LE(w4, ms(50)) << interByte;
    }
}

TEST(WakeUp, KwpSlowInitAcceptsDifferentKeyBytesAndAWrongHandshakeFails)
{
    sim::VehicleConfig kwp;
    kwp.slowInit = link::LineKind::Kwp;
    test::SimBench bench(kwp);
    EXPECT_FALSE(bench.wake(1)) << "ISO 9141 refuses KWP key bytes";
    EXPECT_TRUE(bench.wake(2));
    EXPECT_EQ(bench.result, "EF8F");
    EXPECT_EQ(bench.ask("C033F10100").substr(0, 6), "86F118");

    sim::VehicleConfig wrong;
    wrong.faults.wakeUps[0] = Fault::WrongKeyBytes;
    wrong.faults.wakeUps[1] = Fault::WrongInvertedAddress;
    test::SimBench refused(wrong);
    EXPECT_FALSE(refused.wake(1));
    EXPECT_TRUE(refused.bytes(TraceOrigin::Tester).empty()) << "no inverted KB2 for key bytes we refuse";
    EXPECT_FALSE(refused.wake(1)) << "the handshake ends with the inverted address or not at all";
    EXPECT_FALSE(refused.link.IsPortOpen());
    EXPECT_TRUE(refused.wake(1));
}

TEST(WakeUp, FastInitPulseAndStartCommunicationAreOnTime)
{
    test::SimBench bench;
    ASSERT_TRUE(bench.wake(3));
    const auto& init = bench.vehicle.record().inits.back();
    EXPECT_TRUE(init.accepted) << init.note;
    EXPECT_NEAR(static_cast<double>(init.lowWidth), 25000.0, 1000.0);
    EXPECT_NEAR(static_cast<double>(init.firstByteAfterLow), 50000.0, 1000.0);
    EXPECT_EQ(link::splitReply(bench.result).size(), 2u) << "both units answer the functional StartCommunication";

    // The settings' init delay cannot push the pattern out of its window.
    test::SimBench skewed;
    skewed.link.SetKwp2000InitDelay("22");
    ASSERT_TRUE(skewed.wake(3));
    EXPECT_GE(skewed.vehicle.record().inits.back().firstByteAfterLow, ms(49));
}

TEST(WakeUp, EveryWakeUpFollowsW5OfSilence)
{
    test::SimBench bench;
    ASSERT_TRUE(bench.wake(1));
    bench.ask("686AF10100");
    const auto lastByte = bench.vehicle.record().events.back().time;
    ASSERT_TRUE(bench.wake(1, "", true));
    const auto edges = bench.vehicle.record().edges();
    EXPECT_GE(edges.at(edges.size() - 6).time - lastByte, ms(300));
}

TEST(Exchange, TwoUnitsRepliesAreJoinedWithTheirOwnSourceAddresses)
{
    test::SimBench bench;
    ASSERT_TRUE(bench.wake(1));
    const auto messages = link::splitReply(bench.ask("686AF10100"));
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[0].substr(4, 2), "18");
    EXPECT_EQ(messages[1].substr(0, 6), "486B10");
    EXPECT_EQ(messages[1].substr(6, 2), "41");
    for (const auto& m : messages)
        EXPECT_TRUE(link::checksumHolds(m)) << m;
    // Damaged messages of a raw reply (a hand-edited capture, say) are left out, the rest kept.
    EXPECT_EQ(bench.link.DecodeReply(messages[0] + ":486B1X:" + messages[1] + ":486B1:"),
              messages[0] + ":" + messages[1]);
}

test::RequestOnBus lastRequest(const test::SimBench& bench)
{
    return test::lastRequest(bench.vehicle.record(), bench.vehicle.byteTime());
}

TEST(Exchange, P3BeforeTheRequestAndP4BetweenItsBytesStayInsideTheirWindows)
{
    test::SimBench bench;
    ASSERT_TRUE(bench.wake(1));
    const auto byte = bench.vehicle.byteTime();
    struct Case {
        int p3, p4;
        link::Micros gapMin, gapMax, p4Max;
    };
    // A P3 below P3min or beyond P3max is held to the window, and P4 to 5 ms below its maximum.
    const Case cases[] = {{120, 12, ms(120), ms(121), ms(13)},
                          {0, 0, ms(55), ms(56), ms(1)},
                          {2147483647, 25, ms(5000), ms(5001), ms(16)}};
    for (const Case& c : cases) {
        bench.link.SetP3Delay(c.p3);
        bench.link.SetP4Delay(c.p4);
        EXPECT_FALSE(bench.ask("686AF1010C").empty()) << c.p3 << " ms: the unit still answers";
        const test::RequestOnBus r = lastRequest(bench);
        ASSERT_EQ(r.starts.size(), 6u);
        EXPECT_GE(r.quietBefore(), c.gapMin) << c.p3;
        EXPECT_LE(r.quietBefore(), c.gapMax) << c.p3;
        for (std::size_t i = 1; i < r.starts.size(); ++i)
            EXPECT_LE(r.starts[i] - byte - r.starts[i - 1], c.p4Max) << c.p4;
    }
    EXPECT_EQ(bench.link.GetP3Delay(), 2147483647) << "the setting itself is kept as given";
}

TEST(Exchange, TheWindowGetsItsEventsInLongWaitsOnlyAndOften)
{
    test::SimBench bench;
    ASSERT_TRUE(bench.wake(1));
    bench.link.SetP3Delay(300);
    bench.link.SetP4Delay(15);
    struct Pass {
        link::Micros start, end;
    };
    std::vector<Pass> passes;
    bench.link.setIdleHook([&] {
        const link::Micros start = bench.clock.now();
        // A slow repaint: it must never fall inside a request.
        bench.clock.sleepFor(ms(30));
        passes.push_back({start, bench.clock.now()});
    });
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(link::splitReply(bench.ask("686AF10100")).size(), 2u);
    const test::RequestOnBus r = lastRequest(bench);
    for (const Pass& p : passes)
        EXPECT_FALSE(p.end > r.starts.front() && p.start < r.starts.back()) << "events between the bytes of a request";
    // During the P3 wait the window waits at most 10 ms between passes.
    std::size_t inWait = 0;
    for (std::size_t i = 1; i < passes.size(); ++i) {
        if (passes[i].start >= r.starts.front() || passes[i - 1].start < r.lastUnitByte)
            continue;
        ++inWait;
        EXPECT_LE(passes[i].start - passes[i - 1].end, ms(10));
    }
    EXPECT_GE(inWait, 3u);
}

TEST(Exchange, NoEchoAndCollisionAreDifferentErrors)
{
    test::SimBench silent(withRequestFault(0, Fault::NoEcho));
    ASSERT_TRUE(silent.wake(1));
    try {
        silent.ask("686AF10100");
        FAIL() << "no error without an echo";
    } catch (const LinkError& e) {
        EXPECT_EQ(e.kind(), LinkError::Kind::NoEcho);
        EXPECT_NE(std::string(e.what()).find("cable"), std::string::npos);
    }
    test::SimBench collided(withRequestFault(0, Fault::Collision));
    ASSERT_TRUE(collided.wake(1));
    try {
        collided.ask("686AF10100");
        FAIL() << "no error on a wrong echo";
    } catch (const LinkError& e) {
        EXPECT_EQ(e.kind(), LinkError::Kind::Collision);
    }
    EXPECT_EQ(link::splitReply(collided.ask("686AF10100")).size(), 2u) << "the link goes on after a collision";
}

TEST(Exchange, BadChecksumFramesAreDroppedAndPendingRepliesWaitedFor)
{
    test::SimBench bad(withRequestFault(0, Fault::BadChecksum));
    ASSERT_TRUE(bad.wake(1));
    const auto kept = link::splitReply(bad.ask("686AF10100"));
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(kept[0].substr(4, 2), "18");

    test::SimBench busy(withRequestFault(0, Fault::ResponsePending));
    ASSERT_TRUE(busy.wake(1));
    const auto answered = link::splitReply(busy.ask("686AF10100"));
    ASSERT_EQ(answered.size(), 2u) << "the answer 400 ms after 7F..78 is still collected";
    EXPECT_EQ(answered[1].substr(6, 2), "41");

    // Stray bytes before the replies, and replies just inside P2max, still give both messages.
    for (Fault f : {Fault::Noise, Fault::LateReply}) {
        test::SimBench odd(withRequestFault(0, f));
        ASSERT_TRUE(odd.wake(1));
        EXPECT_EQ(link::splitReply(odd.ask("686AF10100")).size(), 2u) << static_cast<int>(f);
    }
}

TEST(Exchange, SilenceIsAnEmptyReplyAndTheReconnectFlagWakesTheUnitAgain)
{
    test::SimBench bench(withRequestFault(1, Fault::DropSession));
    ASSERT_TRUE(bench.wake(1));
    EXPECT_FALSE(bench.ask("686AF10100").empty());
    EXPECT_EQ(bench.ask("686AF10100"), "");
    EXPECT_EQ(bench.ask("686AF10100"), "");
    ASSERT_TRUE(bench.wake(1, "", true));
    EXPECT_FALSE(bench.ask("686AF10100").empty());
}

TEST(Session, BodiesAreFramedInTheHeaderFormTheStartFrameOpened)
{
    test::SimBench bench;
    const std::string start = "8110FC81" + bench.link.ComputeChecksum("8110FC81");
    EXPECT_EQ(start, "8110FC810E");
    ASSERT_TRUE(bench.wake(3, start));
    EXPECT_EQ(bench.result.substr(8, 4), "E58F") << "KB1: no address bytes, length in the format byte";
    EXPECT_EQ(bench.link.EncodeRequest("052211000401"), "0522110004013D");
    const std::string raw = bench.link.Transact(bench.link.EncodeRequest("052211000401"));
    ASSERT_EQ(raw.size(), 18u) << "the frame as it came: length, 62, identifier, four bitmap bytes, checksum";
    EXPECT_EQ(raw.substr(16), bench.link.ComputeChecksum(raw.substr(0, 16)));
    EXPECT_EQ(bench.link.DecodeReply(raw), raw.substr(0, 16)) << "the extracted reply is read by its length";
    EXPECT_EQ(raw.substr(0, 8), "07621100");

    // A unit that writes addresses and a separate length byte: the raw reply still has its service
    // right after the length, where the keep-alive looks for it.
    sim::VehicleConfig lengthByte;
    lengthByte.kwpKb1 = 0xEA;
    test::SimBench addressed(lengthByte);
    ASSERT_TRUE(addressed.wake(3, start));
    EXPECT_EQ(addressed.link.EncodeRequest("052211000401"), "8010FC052211000401C9");
    const std::string bodyRaw = addressed.link.Transact(addressed.link.EncodeRequest("052211000401"));
    EXPECT_EQ(bodyRaw.substr(0, 8), "07621100");
    EXPECT_EQ(addressed.link.DecodeReply(bodyRaw), raw.substr(0, 16));

    // The functional start still opens a session with full headers on the same unit.
    ASSERT_TRUE(bench.wake(3));
    EXPECT_EQ(bench.link.EncodeRequest("C233F10100"), "C233F10100" + bench.link.ComputeChecksum("C233F10100"));
    EXPECT_EQ(link::splitReply(bench.ask("C233F10100")).size(), 2u);
}

TEST(Session, PortStateAndStopwatch)
{
    test::SimBench bench;
    EXPECT_FALSE(bench.link.IsPortOpen());
    EXPECT_THROW(bench.link.Transact("686AF10100C4"), LinkError);
    EXPECT_THROW(bench.link.EncodeRequest("68 6A"), LinkError);

    ASSERT_TRUE(bench.wake(1));
    EXPECT_TRUE(bench.link.IsPortOpen());
    // A close asked for from the idle hook, mid-exchange, happens when the exchange ends.
    bench.link.setIdleHook([&] { bench.link.ClosePort(0); });
    EXPECT_EQ(link::splitReply(bench.ask("686AF10100")).size(), 2u);
    EXPECT_FALSE(bench.link.IsPortOpen());

    bench.link.StartStopwatch();
    bench.clock.sleepFor(ms(1234) + 56);
    bench.link.LapStopwatch();
    EXPECT_EQ(bench.link.ReadStopwatch(), 12340);
}

TEST(Session, AFailedWakeUpFreesThePortAndAClosedLinkRefusesPlainly)
{
    sim::VehicleConfig deaf;
    deaf.faults.wakeUps = {{0, Fault::Silence}, {1, Fault::Silence}, {2, Fault::Silence}, {4, Fault::Silence}};
    test::SimBench bench(deaf);
    for (int protocol : {1, 2, 3}) {
        EXPECT_FALSE(bench.wake(protocol)) << protocol;
        EXPECT_FALSE(bench.link.IsPortOpen()) << protocol;
        try {
            bench.link.Transact("686AF10100C4");
            FAIL() << "a closed link sent a frame";
        } catch (const LinkError& e) {
            EXPECT_EQ(e.kind(), LinkError::Kind::PortLost);
        }
    }
    // A re-wake of a standing session keeps the port: its caller goes on counting silence.
    ASSERT_TRUE(bench.wake(1));
    EXPECT_FALSE(bench.wake(1, "", true));
    EXPECT_TRUE(bench.link.IsPortOpen());
    EXPECT_EQ(bench.ask("686AF10100"), "");

    // Rates no K-line interface runs at are refused before the wire is touched.
    for (int rate : {999999999, 0, -10400, 300}) {
        test::SimBench refused;
        try {
            refused.link.InitializeEcu("33", rate, 0, 1, "", false, refused.result);
            FAIL() << rate;
        } catch (const LinkError& e) {
            EXPECT_EQ(e.kind(), LinkError::Kind::BaudRefused);
            EXPECT_NE(std::string(e.what()).find(std::to_string(rate)), std::string::npos);
        }
        EXPECT_FALSE(refused.link.IsPortOpen());
        EXPECT_TRUE(refused.vehicle.record().events.empty()) << rate;
        EXPECT_TRUE(refused.wake(1)) << "the next try with a good rate works";
    }

    // A port that opens but will not take the rate is closed again, not left half set up.
    struct NoRate final : link::Wire {
        bool open_ = false;
        void open() override { open_ = true; }
        void close() override { open_ = false; }
        bool isOpen() const override { return open_; }
        void setBaud(int) override { throw LinkError(LinkError::Kind::BaudRefused, "runs at 9600 only"); }
        void setBreak(bool) override {}
        void write(std::span<const std::uint8_t>) override {}
        std::size_t read(std::span<std::uint8_t>, link::Micros) override { return 0; }
        void flushInput() override {}
    };
    link::VirtualClock clock;
    link::LinkSession fussy([](int, link::InterfaceType) { return std::make_unique<NoRate>(); }, clock);
    std::string result;
    EXPECT_THROW(fussy.InitializeEcu("33", 10400, 1, 1, "", false, result), LinkError);
    EXPECT_FALSE(fussy.IsPortOpen());
    EXPECT_THROW(fussy.Transact("686AF10100C4"), LinkError);
}
