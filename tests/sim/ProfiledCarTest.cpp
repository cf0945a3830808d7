#include "link/SimBench.h"
#include "link/ReplyText.h"
#include "link/decode/TroubleCodes.h"
#include "sim/VirtualVehicle.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kvx::sim::test {
namespace {

using Bench = kvx::test::SimBench;

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
            const auto reply = link::splitReply(bench.ask(request));
            ASSERT_EQ(reply.size(), 1u) << c.car << ", protocol " << protocol;
            EXPECT_NE(reply[0].find("410D"), std::string::npos) << c.car << ": " << reply[0];
        }
    }
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
    const auto frames = link::splitReply(reply);
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
        for (const auto& m : link::splitReply(bench.ask("686AF1" + request)))
            if (from.empty() || from.back() != m.substr(4, 2))
                from.push_back(m.substr(4, 2));
        EXPECT_EQ(from, (std::vector<std::string>{"11", "10"})) << request;
    }
    // A service no unit knows: the first unit speaks for the car, once.
    const auto refused = link::splitReply(bench.ask("686AF108010000000000"));
    ASSERT_EQ(refused.size(), 1u);
    EXPECT_EQ(refused[0].substr(4, 8), "107F0811");
    // Cleared on both units.
    ASSERT_EQ(link::splitReply(bench.ask("686AF104")).size(), 2u);
    for (const auto& m : link::splitReply(bench.ask("686AF103")))
        EXPECT_EQ(m.substr(6, 14), "43000000000000") << m;
}

// The built-in car's drive as its engine unit tells it, woken again after each wait.
TEST(ProfiledCar, TheBuiltInCarIdlesColdThenDrivesAndWaitsAtALight)
{
    Bench bench;
    const auto data = [&](const char* pid) {
        for (const std::string& m : link::splitReply(bench.ask(std::string("686AF101") + pid)))
            if (link::sourceText(m) == "10")
                return link::readMessage(m)->data;
        return link::Bytes(3);
    };
    const auto rpm = [&] { const auto d = data("0C"); return (d[1] * 256 + d[2]) / 4; };
    const auto speed = [&] { return int(data("0D")[1]); };
    const auto coolant = [&] { return data("05")[1] - 40; };
    ASSERT_TRUE(bench.wake(1));
    const int coldCoolant = coolant();
    EXPECT_GT(rpm(), 1000);
    EXPECT_LT(coldCoolant, 35);
    EXPECT_EQ(speed(), 0);
    bench.clock.sleepFor(link::ms(190'000));
    ASSERT_TRUE(bench.wake(1, "", true));
    EXPECT_GT(speed(), 5);
    EXPECT_GT(coolant(), coldCoolant + 30);
    bench.clock.sleepFor(link::ms(100'000));
    ASSERT_TRUE(bench.wake(1, "", true));
    EXPECT_EQ(speed(), 0);
    EXPECT_LT(rpm(), 900);
}

} // namespace
} // namespace kvx::sim::test
