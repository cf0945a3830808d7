#include "BusTester.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace kvx::sim::test {
namespace {

// The service and data of the only frame: header and checksum off.
Bytes body(const std::vector<Bytes>& frames)
{
    if (frames.size() != 1)
        return {};
    return Bytes(frames[0].begin() + 3, frames[0].end() - 1);
}

// An ISO 9141 session; ask() returns the frames the units sent for one request.
struct Car : BusTester {
    Car() { slowInit(); }
    std::vector<Bytes> ask(const Bytes& payload)
    {
        const link::Micros from = clock.now();
        iso(payload);
        return unitFrames(vehicle.record(), from);
    }
    // The engine unit's frames only.
    std::vector<Bytes> engine(const Bytes& payload)
    {
        std::vector<Bytes> out;
        for (auto& f : ask(payload))
            if (f.size() > 2 && f[2] == 0x10)
                out.push_back(f);
        return out;
    }
};

TEST(Service01, BothUnitsAnswerWithTheGearboxFirstAndValidFrames)
{
    Car car;
    const auto frames = car.ask({0x01, 0x00});
    ASSERT_EQ(frames.size(), 2u);
    EXPECT_EQ(frames[0][2], 0x18);
    EXPECT_EQ(frames[1][2], 0x10);
    for (const auto& f : frames) {
        EXPECT_EQ(f[0], 0x48);
        EXPECT_EQ(f[1], 0x6B);
        EXPECT_EQ(f[3], 0x41);
        EXPECT_EQ(f.size(), 10u);
        EXPECT_TRUE(checksumOk(f));
    }
    // Reply timing: P2 after the request, P1 between bytes, P2 between the two units.
    const auto& rec = car.vehicle.record();
    const auto tester = rec.bytes(TraceOrigin::Tester);
    const auto ecu = rec.bytes(TraceOrigin::Ecu);
    const link::Micros byte = car.vehicle.byteTime();
    const link::Micros requestEnd = tester.back().time;
    std::vector<BusEvent> reply;
    for (const auto& e : ecu)
        if (e.time > requestEnd)
            reply.push_back(e);
    ASSERT_EQ(reply.size(), 20u);
    const link::Micros p2 = reply[0].time - byte - requestEnd;
    EXPECT_TRUE(p2 >= ms(25) && p2 <= ms(50)) << p2;
    for (std::size_t i = 1; i < reply.size(); ++i) {
        const link::Micros gap = reply[i].time - byte - reply[i - 1].time;
        EXPECT_LE(gap, i == 10 ? ms(50) : ms(20)) << i;
        EXPECT_GE(gap, i == 10 ? ms(25) : 0) << i;
    }
}

TEST(Service01, BitmapsChainAndDeclareEveryParameterTheEngineAnswers)
{
    Car car;
    std::set<int> declared;
    for (std::uint8_t base : {0x00, 0x20, 0x40}) {
        const auto f = car.engine({0x01, base});
        ASSERT_EQ(f.size(), 1u) << int(base);
        for (int bit = 0; bit < 32; ++bit)
            if (f[0][5 + bit / 8] & (0x80 >> (bit % 8)))
                declared.insert(base + bit + 1);
    }
    EXPECT_TRUE(declared.count(0x20) && declared.count(0x40));
    EXPECT_FALSE(declared.count(0x60));
    EXPECT_GE(declared.size() - 2, 30u);
    for (int pid : declared) {
        if (pid % 0x20 == 0)
            continue;
        const auto f = car.engine({0x01, static_cast<std::uint8_t>(pid)});
        ASSERT_EQ(f.size(), 1u) << std::hex << pid;
        EXPECT_EQ(f[0][4], pid);
        EXPECT_TRUE(checksumOk(f[0]));
    }
    // A parameter nobody has gets no answer to a functional request.
    EXPECT_TRUE(car.ask({0x01, 0x0A}).empty());
    // The gearbox declares a few parameters and no further ranges.
    const auto frames = car.ask({0x01, 0x00});
    EXPECT_EQ(frames[0][8] & 1, 0);
}

TEST(Service01, ValuesMoveFromColdIdleToADrive)
{
    Car car;
    auto rpm = [&] { auto f = car.engine({0x01, 0x0C}); return (f[0][5] * 256 + f[0][6]) / 4; };
    auto speed = [&] { return car.engine({0x01, 0x0D})[0][5]; };
    auto coolant = [&] { return car.engine({0x01, 0x05})[0][5] - 40; };
    const int coldRpm = rpm(), coldCoolant = coolant();
    EXPECT_GT(coldRpm, 1000);
    EXPECT_LT(coldCoolant, 35);
    EXPECT_EQ(speed(), 0);
    car.clock.sleepFor(ms(190'000));
    car.slowInit();
    EXPECT_GT(speed(), 5);
    EXPECT_GT(coolant(), coldCoolant + 30);
    car.clock.sleepFor(ms(100'000));
    car.slowInit();
    EXPECT_EQ(speed(), 0); // waiting at a light
    EXPECT_LT(rpm(), 900);
}

TEST(TroubleCodes, StoredInTwoFramesPendingAndAClearThatClears)
{
    Car car;
    const auto stored = car.engine({0x03});
    ASSERT_EQ(stored.size(), 2u);
    EXPECT_EQ(stored[0], (Bytes{0x48, 0x6B, 0x10, 0x43, 0x03, 0x01, 0x04, 0x20, 0x01, 0x71, stored[0].back()}));
    EXPECT_EQ(Bytes(stored[1].begin() + 3, stored[1].end() - 1), (Bytes{0x43, 0x04, 0x42, 0x03, 0x00, 0x01, 0x35}));
    const auto pending = car.engine({0x07});
    ASSERT_EQ(pending.size(), 1u);
    EXPECT_EQ(Bytes(pending[0].begin() + 3, pending[0].end() - 1), (Bytes{0x47, 0x01, 0x28, 0x04, 0x55, 0, 0}));
    EXPECT_EQ(car.engine({0x01, 0x01})[0][5], 0x86); // lamp on, six codes

    // The freeze frame belongs to the first stored code.
    EXPECT_EQ(body(car.engine({0x02, 0x02, 0x00})), (Bytes{0x42, 0x02, 0x00, 0x03, 0x01}));
    const auto ffSpeed = car.engine({0x02, 0x0D, 0x00});
    ASSERT_EQ(ffSpeed.size(), 1u);
    EXPECT_GT(ffSpeed[0][6], 0); // taken on the move, while the car now idles

    const auto cleared = car.engine({0x04});
    ASSERT_EQ(cleared.size(), 1u);
    EXPECT_EQ(cleared[0][3], 0x44);
    EXPECT_EQ(body(car.engine({0x03})), (Bytes{0x43, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(car.engine({0x07})[0][4], 0);
    EXPECT_EQ(car.engine({0x01, 0x01})[0][5], 0x00);
    EXPECT_EQ(car.engine({0x01, 0x21})[0][5], 0x00);
    const auto ffMap = car.engine({0x02, 0x00, 0x00});
    EXPECT_EQ(Bytes(ffMap[0].begin() + 6, ffMap[0].end() - 1), (Bytes{0, 0, 0, 0}));
    EXPECT_TRUE(car.engine({0x02, 0x0D, 0x00}).empty());
}

TEST(OtherServices, OxygenMonitoringAndVin)
{
    Car car;
    const auto o2 = car.engine({0x05, 0x05, 0x02});
    ASSERT_EQ(o2.size(), 1u);
    const Bytes& f = o2[0];
    EXPECT_EQ(f[3], 0x45);
    EXPECT_TRUE(f[6] >= f[7] && f[6] <= f[8]); // value inside its limits
    EXPECT_TRUE(car.engine({0x05, 0x05, 0x05}).empty()); // no bank 2

    int failing = 0, minimums = 0;
    const auto map = car.engine({0x06, 0x00});
    for (int bit = 0; bit < 32; ++bit) {
        if (!(map[0][5 + bit / 8] & (0x80 >> (bit % 8))))
            continue;
        for (const auto& r : car.engine({0x06, static_cast<std::uint8_t>(bit + 1)})) {
            ASSERT_EQ(r.size(), 11u);
            const int value = r[6] * 256 + r[7], limit = r[8] * 256 + r[9];
            const bool isMin = r[5] & 0x80;
            minimums += isMin;
            failing += isMin ? value < limit : value > limit;
        }
    }
    EXPECT_GE(minimums, 2);
    EXPECT_EQ(failing, 2);

    const auto vin = car.engine({0x09, 0x02});
    ASSERT_EQ(vin.size(), 5u);
    std::string text;
    for (std::size_t i = 0; i < vin.size(); ++i) {
        EXPECT_EQ(vin[i][5], i + 1);
        text.append(vin[i].begin() + 6, vin[i].end() - 1);
    }
    EXPECT_EQ(text.substr(3), builtInVehicle().units.front().vin);
}

TEST(NegativeReplies, UnsupportedServiceInTheFormatOfEachProtocol)
{
    Car car;
    const auto iso = car.ask({0x08, 0x01, 0, 0, 0, 0, 0});
    ASSERT_EQ(iso.size(), 1u);
    EXPECT_EQ(Bytes(iso[0].begin(), iso[0].end() - 1), (Bytes{0x48, 0x6B, 0x10, 0x7F, 0x08, 0x11}));
    EXPECT_TRUE(checksumOk(iso[0]));

    BusTester kwp;
    kwp.fastInit();
    const Bytes reply = kwp.kwp({0x08, 0x01});
    ASSERT_EQ(reply.size(), 7u);
    EXPECT_EQ(Bytes(reply.begin(), reply.end() - 1), (Bytes{0x83, 0xF1, 0x10, 0x7F, 0x08, 0x11}));
    // Asked by its own address, a unit says no to a parameter it lacks rather than keep quiet.
    Bytes physical{0x82, 0x18, 0xF1, 0x01, 0x0C};
    physical.push_back(link::checksum(physical));
    const Bytes refused = kwp.request(physical);
    ASSERT_EQ(refused.size(), 7u);
    EXPECT_EQ(refused[3], 0x7F);
    EXPECT_EQ(refused[5], 0x12);
}

} // namespace
} // namespace kvx::sim::test
