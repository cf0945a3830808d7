#include "link/LinkError.h"
#include "link/LinkSession.h"
#include "sim/VirtualVehicle.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kvx::sim {
namespace {

using link::ms;

// The link on the virtual vehicle, on virtual time.
struct Rig {
    link::VirtualClock clock{link::ms(10'000)};
    VirtualVehicle vehicle;
    link::LinkSession link;

    explicit Rig(VehicleConfig config = {})
        : vehicle(clock, std::move(config)), link([this](int) { return vehicle.makeWire(); }, clock)
    {
    }
    bool init(int protocol, bool reconnect = false, const std::string& start = {})
    {
        std::string result;
        return link.InitializeEcu(start.empty() ? "33" : "", 10400, 0, protocol, start, reconnect, result);
    }
    std::string ask(const std::string& request) { return link.DecodeReply(link.Transact(link.EncodeRequest(request))); }
};

std::vector<std::string> split(const std::string& reply)
{
    std::vector<std::string> out;
    std::size_t from = 0;
    while (!reply.empty()) {
        const std::size_t colon = reply.find(':', from);
        out.push_back(reply.substr(from, colon - from));
        if (colon == std::string::npos)
            break;
        from = colon + 1;
    }
    return out;
}

bool checksumOk(const std::string& message)
{
    const auto bytes = link::fromHex(message);
    return bytes && bytes->size() > 1 && link::checksum(link::Bytes(bytes->begin(), bytes->end() - 1)) == bytes->back();
}

TEST(LinkOnVehicle, FiveBaudWakeUpHoldsItsWindows)
{
    Rig rig;
    ASSERT_TRUE(rig.init(link::Iso9141Slow));
    const BusRecord& rec = rig.vehicle.record();
    ASSERT_EQ(rec.inits.size(), 1u);
    EXPECT_EQ(rec.inits[0].address, 0x33);
    EXPECT_LE(rec.inits[0].worstBitError, ms(2));
    // W4: the tester's inverted KB2 follows KB2 by 25..50 ms.
    const auto ecu = rec.bytes(Origin::Ecu);
    const auto tester = rec.bytes(Origin::Tester);
    ASSERT_GE(ecu.size(), 3u);
    ASSERT_GE(tester.size(), 1u);
    const link::Micros w4 = tester[0].time - rig.vehicle.byteTime() - ecu[2].time;
    EXPECT_TRUE(w4 >= ms(25) && w4 <= ms(50)) << w4;
    EXPECT_EQ(tester[0].byte, 0xF7);
}

TEST(LinkOnVehicle, FastInitPulseAndStartTiming)
{
    Rig rig;
    ASSERT_TRUE(rig.init(link::Kwp2000Fast));
    const InitObservation& obs = rig.vehicle.record().inits.at(0);
    EXPECT_EQ(obs.kind, InitObservation::Kind::FastInit);
    EXPECT_LE(std::llabs(obs.lowWidth - ms(25)), ms(1));
    EXPECT_LE(std::llabs(obs.firstByteAfterLow - ms(50)), ms(1));
    const auto frames = split(rig.ask("C033F10100"));
    ASSERT_EQ(frames.size(), 2u);
}

TEST(LinkOnVehicle, KwpSlowInitAndKeyBytesChooseTheProtocol)
{
    VehicleConfig kwpCar;
    kwpCar.slowInit = Protocol::Kwp2000;
    Rig rig(kwpCar);
    EXPECT_FALSE(rig.init(link::Iso9141Slow));
    rig.clock.sleepFor(ms(3000));
    const std::size_t before = rig.vehicle.record().bytes(Origin::Tester).size();
    ASSERT_TRUE(rig.init(link::Kwp2000Slow));
    // The tester answers KB2 8F with 70 inside W4, and gets the inverted address back.
    const auto tester = rig.vehicle.record().bytes(Origin::Tester);
    const auto ecu = rig.vehicle.record().bytes(Origin::Ecu);
    ASSERT_GT(tester.size(), before);
    EXPECT_EQ(tester[before].byte, 0x70);
    EXPECT_EQ(ecu.back().byte, 0xCC);
    const link::Micros w4 = tester[before].time - rig.vehicle.byteTime() - ecu[ecu.size() - 2].time;
    EXPECT_TRUE(w4 >= ms(25) && w4 <= ms(50)) << w4;
    EXPECT_FALSE(rig.ask("C033F10100").empty());
}

TEST(LinkOnVehicle, TwoUnitsJoinedGearboxFirst)
{
    Rig rig;
    ASSERT_TRUE(rig.init(link::Iso9141Slow));
    const auto frames = split(rig.ask("686AF10100"));
    ASSERT_EQ(frames.size(), 2u);
    EXPECT_EQ(frames[0].substr(0, 10), "486B184100");
    EXPECT_EQ(frames[1].substr(0, 10), "486B104100");
    for (const auto& f : frames)
        EXPECT_TRUE(checksumOk(f)) << f;
}

TEST(LinkOnVehicle, SessionLostAfterP3MaxComesBackWithAReconnect)
{
    Rig rig;
    ASSERT_TRUE(rig.init(link::Iso9141Slow));
    rig.clock.sleepFor(ms(6000));
    EXPECT_EQ(rig.ask("686AF1010D"), "");
    ASSERT_TRUE(rig.init(link::Iso9141Slow, true));
    EXPECT_GE(rig.vehicle.record().inits.back().idleBefore, ms(300)); // W5
    EXPECT_NE(rig.ask("686AF1010D"), "");
}

TEST(LinkOnVehicle, P3AndP4AreHonouredOnTheBus)
{
    Rig rig;
    ASSERT_TRUE(rig.init(link::Iso9141Slow));
    rig.link.SetP3Delay(120);
    rig.link.SetP4Delay(15);
    rig.ask("686AF10100");
    const std::size_t before = rig.vehicle.record().bytes(Origin::Tester).size();
    const link::Micros lastReply = rig.vehicle.record().bytes(Origin::Ecu).back().time;
    rig.ask("686AF1010C");
    const auto tester = rig.vehicle.record().bytes(Origin::Tester);
    ASSERT_EQ(tester.size(), before + 6);
    const link::Micros byte = rig.vehicle.byteTime();
    EXPECT_GE(tester[before].time - byte - lastReply, ms(120));
    for (std::size_t i = before + 1; i < tester.size(); ++i)
        EXPECT_GE(tester[i].time - byte - tester[i - 1].time, ms(15));
}

// One request under one fault of the plan, on an ISO 9141 session.
std::string faulted(Rig& rig)
{
    EXPECT_TRUE(rig.init(link::Iso9141Slow));
    return rig.ask("686AF10100");
}

VehicleConfig planned(Fault fault)
{
    VehicleConfig c;
    c.faults.requests[0] = fault;
    return c;
}

TEST(LinkOnVehicle, EachFaultGivesTheRightLinkResult)
{
    {
        Rig rig(planned(Fault::Silence));
        EXPECT_EQ(faulted(rig), "");
        EXPECT_NE(rig.ask("686AF10100"), "");
    }
    {
        Rig rig(planned(Fault::DropSession));
        EXPECT_EQ(faulted(rig), "");
        EXPECT_EQ(rig.ask("686AF10100"), "");
    }
    {
        Rig rig(planned(Fault::BadChecksum));
        const auto frames = split(faulted(rig));
        ASSERT_EQ(frames.size(), 1u); // the engine unit's frame dropped
        EXPECT_EQ(frames[0].substr(4, 2), "18");
    }
    for (Fault f : {Fault::Noise, Fault::LateReply, Fault::ResponsePending}) {
        Rig rig(planned(f));
        const auto frames = split(faulted(rig));
        ASSERT_GE(frames.size(), 2u) << static_cast<int>(f);
        EXPECT_EQ(frames.back().substr(4, 4), "1041") << static_cast<int>(f);
    }
    {
        Rig rig(planned(Fault::NegativeReply));
        const auto frames = split(faulted(rig));
        ASSERT_EQ(frames.size(), 2u);
        EXPECT_EQ(frames[1].substr(6, 2), "7F");
    }
    {
        Rig rig(planned(Fault::NoEcho));
        ASSERT_TRUE(rig.init(link::Iso9141Slow));
        try {
            rig.ask("686AF10100");
            ADD_FAILURE() << "no error without an echo";
        } catch (const link::LinkError& e) {
            EXPECT_EQ(e.kind(), link::LinkError::Kind::NoEcho);
        }
    }
    {
        Rig rig(planned(Fault::Collision));
        ASSERT_TRUE(rig.init(link::Iso9141Slow));
        try {
            rig.ask("686AF10100");
            ADD_FAILURE() << "no error for a changed echo";
        } catch (const link::LinkError& e) {
            EXPECT_EQ(e.kind(), link::LinkError::Kind::Collision);
        }
    }
    {
        VehicleConfig c;
        c.faults.wakeUps[0] = Fault::WrongKeyBytes;
        Rig rig(c);
        EXPECT_FALSE(rig.init(link::Iso9141Slow));
        rig.clock.sleepFor(ms(3000));
        EXPECT_TRUE(rig.init(link::Iso9141Slow, true));
    }
}

} // namespace
} // namespace kvx::sim
