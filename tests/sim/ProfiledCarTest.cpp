#include "link/SimBench.h"
#include "link/decode/TroubleCodes.h"
#include "sim/VirtualVehicle.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kvx::sim::test {
namespace {

using Bench = kvx::test::SimBench;

std::vector<std::string> messages(const std::string& reply)
{
    std::vector<std::string> out;
    for (std::size_t from = 0; from < reply.size();) {
        const std::size_t to = std::min(reply.find(':', from), reply.size());
        out.push_back(reply.substr(from, to - from));
        from = to + 1;
    }
    return out;
}

// A car of one unit: the built-in engine unit, changed as the test needs.
VehicleProfile oneUnitCar(void (*change)(VehicleProfile&, UnitProfile&))
{
    VehicleProfile car = builtInVehicle();
    car.units.resize(1);
    change(car, car.units.front());
    return car;
}

TEST(ProfiledCar, EachCarConnectsOnlyThroughTheWakeUpsItAnswers)
{
    struct Case {
        const char* car;
        void (*change)(VehicleProfile&, UnitProfile&);
        const char* keyBytes[3]; // what protocols 1, 2 and 3 are answered with; nullptr: nothing
    };
    const Case cases[] = {
        {"ISO 9141-2, key bytes 94 94, no fast init",
         [](VehicleProfile& v, UnitProfile&) { v.isoKeyByte = 0x94, v.fastInit = false; },
         {"9494", nullptr, nullptr}},
        {"ISO 14230 slow init only",
         [](VehicleProfile& v, UnitProfile&) { v.slowInit = VehicleProfile::SlowInit::Kwp2000, v.fastInit = false; },
         {nullptr, "EF8F", nullptr}},
        {"fast init only, separate length byte",
         [](VehicleProfile& v, UnitProfile& u) { v.slowInit = VehicleProfile::SlowInit::None, u.kwpKb1 = 0xEA; },
         {nullptr, nullptr, "C1EA8F"}},
    };
    for (const Case& c : cases) {
        const VehicleProfile car = oneUnitCar(c.change);
        for (int protocol = 1; protocol <= 3; ++protocol) {
            Bench bench(configFor(car, 1));
            const char* expected = c.keyBytes[protocol - 1];
            ASSERT_EQ(bench.wake(protocol), expected != nullptr) << c.car << ", protocol " << protocol;
            if (!expected)
                continue;
            EXPECT_NE(bench.result.find(expected), std::string::npos) << c.car << ": " << bench.result;
            const std::string request = protocol == 1 ? "686AF1010D" : "C233F1010D";
            const auto reply = messages(bench.ask(request));
            ASSERT_EQ(reply.size(), 1u) << c.car << ", protocol " << protocol;
            EXPECT_NE(reply[0].find("410D"), std::string::npos) << c.car << ": " << reply[0];
        }
    }
}

TEST(ProfiledCar, ARefusalComesInTheUnitsOwnFrameForm)
{
    const VehicleProfile car = oneUnitCar([](VehicleProfile& v, UnitProfile& u) {
        v.slowInit = VehicleProfile::SlowInit::None;
        u.kwpKb1 = 0xEA; // addresses and a separate length byte only
        u.refusals[0x04] = 0x22;
    });
    Bench bench(configFor(car, 1));
    ASSERT_TRUE(bench.wake(3));
    const std::string raw = bench.link.Transact(bench.link.EncodeRequest("C133F104"));
    EXPECT_EQ(raw.substr(0, 14), "80F110037F0422") << "format 80, a length byte of 3, then 7F 04 22";
    EXPECT_EQ(raw.substr(14), bench.link.ComputeChecksum(raw.substr(0, 14)));
    const auto codes = messages(bench.ask("C133F103"));
    ASSERT_EQ(codes.size(), 2u) << "the codes are still there to read";
}

TEST(ProfiledCar, HexDigitCodesComeWholeAfterTheUnitSaidItWasBusy)
{
    const VehicleProfile car = oneUnitCar([](VehicleProfile&, UnitProfile& u) {
        u.stored = {0x0A80, 0x2A00, 0xC100, 0x9A00}; // P0A80 P2A00 U0100 B1A00
        u.freezeFrame->code = 0x0A80;
        u.pendingFirst = {0x03};
    });
    Bench bench(configFor(car, 1));
    ASSERT_TRUE(bench.wake(1));
    const link::Micros asked = bench.clock.now();
    const std::string reply = bench.ask("686AF103");
    EXPECT_GE(bench.clock.now() - asked, link::ms(400)) << "the link waited for the answer after 7F 03 78";
    const auto frames = messages(reply);
    ASSERT_EQ(frames.size(), 2u) << reply;
    EXPECT_EQ(link::decode::formatTroubleCodes(reply, 2), "P0A80P2A00U0100B1A00");
    EXPECT_EQ(bench.ask("686AF1020200").substr(12, 4), "0A80") << "the freeze frame's code";
}

TEST(ProfiledCar, TwoUnitsAnswerEveryFunctionalRequestInRankOrder)
{
    VehicleProfile car = builtInVehicle();
    car.units[1] = car.units[0];
    car.units[1].address = 0x11;
    car.units[1].replyRank = 0;
    Bench bench(configFor(car, 1));
    ASSERT_TRUE(bench.wake(1));
    for (const std::string request : {"0100", "0120", "010C", "020000", "03", "07", "050101", "0600", "0601", "0902", "3E"}) {
        std::vector<std::string> from;
        for (const auto& m : messages(bench.ask("686AF1" + request)))
            if (from.empty() || from.back() != m.substr(4, 2))
                from.push_back(m.substr(4, 2));
        EXPECT_EQ(from, (std::vector<std::string>{"11", "10"})) << request;
    }
    // A service no unit knows: the first unit speaks for the car, once.
    const auto refused = messages(bench.ask("686AF108010000000000"));
    ASSERT_EQ(refused.size(), 1u);
    EXPECT_EQ(refused[0].substr(4, 8), "107F0811");
    // Cleared on both units.
    ASSERT_EQ(messages(bench.ask("686AF104")).size(), 2u);
    for (const auto& m : messages(bench.ask("686AF103")))
        EXPECT_EQ(m.substr(6, 14), "43000000000000") << m;
}

} // namespace
} // namespace kvx::sim::test
