#include "BusTester.h"

#include <gtest/gtest.h>

namespace kvx::sim::test {
namespace {

TEST(FaultPlan, SameSeedSamePlanAndFixedFaultsComeFirst)
{
    FaultPlan a;
    a.seed = 7;
    a.rate = 0.3;
    FaultPlan b = a;
    FaultPlan c = a;
    c.seed = 8;
    int faults = 0, differ = 0;
    for (int n = 0; n < 400; ++n) {
        EXPECT_EQ(a.forRequest(n), b.forRequest(n));
        EXPECT_NE(a.forRequest(n), Fault::WrongKeyBytes); // a key-byte fault belongs to wake-ups
        faults += a.forRequest(n) != Fault::None;
        differ += a.forRequest(n) != c.forRequest(n);
    }
    EXPECT_GT(faults, 80);
    EXPECT_LT(faults, 160);
    EXPECT_GT(differ, 50);

    a.requests[3] = Fault::Collision;
    EXPECT_EQ(a.forRequest(3), Fault::Collision);
    EXPECT_EQ(FaultPlan{}.forRequest(3), Fault::None);
}

TEST(FaultPlan, ARunOnTheBusRepeatsByteForByte)
{
    auto run = [](std::uint64_t seed) {
        VehicleConfig cfg;
        cfg.faults.seed = seed;
        cfg.faults.rate = 0.5;
        BusTester t(cfg);
        Bytes all;
        for (int i = 0; i < 3; ++i) {
            const Bytes got = t.slowInit();
            all.insert(all.end(), got.begin(), got.end());
            for (int k = 0; k < 10; ++k) {
                const Bytes r = t.iso({0x01, 0x0C});
                all.insert(all.end(), r.begin(), r.end());
            }
            t.clock.sleepFor(ms(6000));
        }
        return all;
    };
    EXPECT_EQ(run(11), run(11));
    EXPECT_NE(run(11), run(12));
}

// One request under one fault, on an ISO 9141 session; the frames and the echo it gave.
struct Faulted {
    std::vector<Bytes> frames;
    Bytes echo;
    link::Micros firstReplyAfterRequest = -1;
    bool sessionOpenAfter = false;
};

Faulted under(Fault fault)
{
    VehicleConfig cfg;
    cfg.faults.requests[0] = fault;
    BusTester t(cfg);
    t.slowInit();
    const link::Micros from = t.clock.now();
    const Bytes request{0x68, 0x6A, 0xF1, 0x01, 0x0C, 0xD0};
    t.wire->write(request);
    t.readUntilQuiet(ms(1000));
    Faulted f;
    f.frames = unitFrames(t.vehicle.record(), from);
    for (const auto& e : t.vehicle.record().bytes(TraceOrigin::Echo))
        if (e.time > from)
            f.echo.push_back(e.byte);
    const auto tester = t.vehicle.record().bytes(TraceOrigin::Tester);
    for (const auto& e : t.vehicle.record().bytes(TraceOrigin::Ecu))
        if (e.time > from) {
            f.firstReplyAfterRequest = e.time - t.vehicle.byteTime() - tester.back().time;
            break;
        }
    f.sessionOpenAfter = !t.iso({0x01, 0x0D}).empty();
    return f;
}

TEST(FaultPlan, EachFaultBendsTheBusAsNamed)
{
    const Faulted plain = under(Fault::None);
    ASSERT_EQ(plain.frames.size(), 1u); // the gearbox has no engine speed
    EXPECT_EQ(plain.echo.size(), 6u);
    EXPECT_TRUE(plain.sessionOpenAfter);

    EXPECT_TRUE(under(Fault::Silence).frames.empty());
    EXPECT_TRUE(under(Fault::Silence).sessionOpenAfter);

    const Faulted dropped = under(Fault::DropSession);
    EXPECT_TRUE(dropped.frames.empty());
    EXPECT_FALSE(dropped.sessionOpenAfter);

    const Faulted bad = under(Fault::BadChecksum);
    ASSERT_EQ(bad.frames.size(), 1u);
    EXPECT_FALSE(checksumOk(bad.frames[0]));

    const Faulted noise = under(Fault::Noise);
    ASSERT_EQ(noise.frames.size(), 2u);
    EXPECT_EQ(noise.frames[1], plain.frames[0]);

    const Faulted refused = under(Fault::NegativeReply);
    ASSERT_EQ(refused.frames.size(), 1u);
    EXPECT_EQ(Bytes(refused.frames[0].begin() + 3, refused.frames[0].end() - 1), (Bytes{0x7F, 0x01, 0x22}));

    const Faulted pending = under(Fault::ResponsePending);
    ASSERT_EQ(pending.frames.size(), 2u);
    EXPECT_EQ(Bytes(pending.frames[0].begin() + 3, pending.frames[0].end() - 1), (Bytes{0x7F, 0x01, 0x78}));
    EXPECT_EQ(pending.frames[1][3], 0x41);

    const Faulted late = under(Fault::LateReply);
    EXPECT_GT(late.firstReplyAfterRequest, ms(45));
    EXPECT_LT(late.firstReplyAfterRequest, ms(50));

    EXPECT_TRUE(under(Fault::NoEcho).echo.empty());
    EXPECT_EQ(under(Fault::NoEcho).frames.size(), 1u);
    const Faulted collided = under(Fault::Collision);
    ASSERT_EQ(collided.echo.size(), 6u);
    EXPECT_NE(collided.echo[0], 0x68);
}

// The link's own tests meet the fault on a 5-baud wake-up; here the fast init's.
TEST(FaultPlan, WrongKeyBytesOnAFastInitAndACleanOneAfter)
{
    VehicleConfig cfg;
    cfg.faults.wakeUps[0] = Fault::WrongKeyBytes;
    BusTester fast(cfg);
    const Bytes reply = fast.fastInit();
    ASSERT_GE(reply.size(), 7u);
    EXPECT_NE(reply[5], 0x8F);
    fast.clock.sleepFor(ms(6000));
    EXPECT_EQ(fast.fastInit()[5], 0x8F);
}

} // namespace
} // namespace kvx::sim::test
