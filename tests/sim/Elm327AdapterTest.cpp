#include "link/Hex.h"
#include "sim/Elm327Adapter.h"
#include "sim/VehicleConfig.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace kvx::sim::test {
namespace {

using link::Micros;

// The built-in car's two units (engine 10, gearbox 18), moved onto a bus.
VehicleProfile carOn(Bus bus)
{
    VehicleProfile car = builtInVehicle();
    car.bus = bus;
    return car;
}

// A terminal on the adapter's serial line, as other ELM327 software would use it.
struct Terminal {
    explicit Terminal(const VehicleProfile& car) : adapter(clock, configFor(car, 1)), wire(adapter.makeWire())
    {
        wire->open();
    }

    // The text up to the prompt, line ends as "|", and when its first line came.
    std::string say(const std::string& command)
    {
        const std::string line = command + "\r";
        sent = clock.now();
        wire->write({reinterpret_cast<const std::uint8_t*>(line.data()), line.size()});
        std::string text;
        firstLine.reset();
        std::array<std::uint8_t, 64> buf{};
        while (text.empty() || text.back() != '>') {
            const std::size_t n = wire->read(buf, clock.now() + link::ms(60'000));
            if (n == 0)
                return text + "(no prompt)";
            for (std::size_t i = 0; i < n; ++i) {
                const char c = static_cast<char>(buf[i]);
                if (c == '\r' && !firstLine)
                    firstLine = clock.now();
                if (c != '\n')
                    text += c == '\r' ? '|' : c;
            }
        }
        return text;
    }

    link::VirtualClock clock{1'000'000};
    Elm327Adapter adapter;
    std::unique_ptr<link::Wire> wire;
    Micros sent = 0;
    std::optional<Micros> firstLine;
};

TEST(Elm327Adapter, SpeaksTheAdaptersDialogue)
{
    Terminal t(carOn(Bus::Can11At500));
    EXPECT_EQ(t.say("ATZ"), "ATZ||ELM327 v1.5||>") << "echo is on after a reset";
    EXPECT_EQ(t.say("ATE0"), "ATE0|OK||>");
    EXPECT_EQ(t.say("AT L0"), "OK||>");
    EXPECT_EQ(t.say("ATI"), "ELM327 v1.5||>");
    EXPECT_EQ(t.say("ATBOGUS"), "?||>");
    EXPECT_EQ(t.say("ATDPN"), "A0||>");

    // The search finds the CAN bus; without headers a single frame shows its data alone.
    EXPECT_EQ(t.say("010D"), "SEARCHING...|41 0D 00|41 0D 00||>");
    EXPECT_EQ(t.say("ATDPN"), "A6||>");
    EXPECT_EQ(t.say("ATH1"), "OK||>");
    EXPECT_EQ(t.say("ATS0"), "OK||>");
    EXPECT_EQ(t.say("010D"), "7E903410D0000000000|7E803410D0000000000||>") << "in the units' reply order";
    EXPECT_EQ(t.say("ATSH7E1"), "OK||>");
    EXPECT_EQ(t.say("010D"), "7E903410D0000000000||>") << "the gearbox alone, asked by its own identifier";
    EXPECT_EQ(t.say(""), "7E903410D0000000000||>") << "an empty line repeats the last command";
    EXPECT_EQ(t.say("0901"), "7E9037F091100000000||>") << "the gearbox refuses what it lacks when asked alone";
    EXPECT_EQ(t.say("ATSH7DF"), "OK||>");
    EXPECT_EQ(t.say("01FF"), "NO DATA||>");
    EXPECT_EQ(t.say("01 0D 1"), "7E903410D0000000000||>") << "the prompt after the one answer asked for";
    EXPECT_EQ(t.say("0X"), "?||>");

    // A protocol the car does not speak.
    EXPECT_EQ(t.say("ATSP3"), "OK||>");
    EXPECT_EQ(t.say("0100"), "BUS INIT: ...ERROR||>");
    EXPECT_EQ(t.say("ATSP8"), "OK||>");
    EXPECT_EQ(t.say("0100"), "UNABLE TO CONNECT||>");
    EXPECT_EQ(t.say("ATSI"), "?||>") << "a slow init belongs to the K-line protocols";
}

TEST(Elm327Adapter, AnswersAfterTheUnitsP2AndEndsByTheAdaptiveWait)
{
    VehicleProfile car = carOn(Bus::Can11At500);
    car.p2 = link::ms(40);
    Terminal t(car);
    for (const char* c : {"ATE0", "ATSP6", "ATH1"})
        t.say(c);
    t.say("0100");
    const Micros ask = t.clock.now();
    t.say("010C");
    ASSERT_TRUE(t.firstLine);
    EXPECT_GE(*t.firstLine - ask, link::ms(40)) << "not before the unit's P2";
    EXPECT_LT(*t.firstLine - ask, link::ms(55)) << "the serial line's time on top";
    // Adaptive timing waits twice the P2 for more answers; without it, the whole ATST time.
    EXPECT_LT(t.clock.now() - ask, link::ms(140));
    t.say("ATAT0");
    const Micros slow = t.clock.now();
    t.say("010C");
    EXPECT_GE(t.clock.now() - slow, link::ms(40 + 200));
    t.say("ATST19");
    const Micros silent = t.clock.now();
    EXPECT_EQ(t.say("01FF"), "NO DATA||>");
    EXPECT_GE(t.clock.now() - silent, link::ms(100));
    EXPECT_LT(t.clock.now() - silent, link::ms(110));
}

TEST(Elm327Adapter, WritesTheCanFormsOfCodesVinAndMonitorResults)
{
    VehicleProfile car = carOn(Bus::Can29At250);
    UnitProfile& engine = car.units.front();
    engine.stored = {0x0301, 0x0302, 0x0303, 0x0304, 0x0420};
    engine.monitorTests = {{0x01, 0x01, 0x0152, 0x0200}, {0x01, 0x81, 0x0152, 0x0100}, {0x02, 0x01, 0x0310, 0x0280}};
    car.units.resize(1);
    Terminal t(car);
    for (const char* c : {"ATE0", "ATSP9", "ATH1"})
        t.say(c);
    // Five codes after their count, in a first frame and a consecutive frame.
    EXPECT_EQ(t.say("03"), "18 DA F1 10 10 0C 43 05 03 01 03 02|18 DA F1 10 21 03 03 03 04 04 20 00||>");
    EXPECT_EQ(t.say("0902"),
              "18 DA F1 10 10 14 49 02 01 4B 56 58|18 DA F1 10 21 31 45 36 54 53 34 52|18 DA F1 10 22 30 30 30 30 39 31 33||>");
    // A minimum and a maximum of one test share a record: OBDMID, test, unit and scaling, value, min, max.
    EXPECT_EQ(t.say("0601"), "18 DA F1 10 10 0A 46 01 01 01 01 52|18 DA F1 10 21 01 00 02 00 00 00 00||>");
    EXPECT_EQ(t.say("0500"), "NO DATA||>") << "no oxygen-sensor service on CAN";
    t.say("ATH0");
    EXPECT_EQ(t.say("03"), "00C|0: 43 05 03 01 03 02|1: 03 03 03 04 04 20||>");
}

TEST(Elm327Adapter, WakesTheKLineItselfAndKeepsItAwake)
{
    VehicleProfile car = builtInVehicle();
    car.units.resize(1);
    Terminal t(car);
    for (const char* c : {"ATE0", "ATH1", "ATSP3"})
        t.say(c);
    const Micros before = t.clock.now();
    EXPECT_EQ(t.say("ATSI"), "BUS INIT: ...OK||>");
    EXPECT_GE(t.clock.now() - before, link::ms(2000)) << "a 5-baud address takes two seconds";
    EXPECT_EQ(t.say("0100"), "48 6B 10 41 00 BE 3F B8 13 CC||>") << "whole frames with their checksum";
    // The adapter's keep-alive holds the session; without it the next request wakes the car again.
    t.clock.sleepFor(link::ms(10'000));
    EXPECT_EQ(t.say("0100"), "48 6B 10 41 00 BE 3F B8 13 CC||>");
    t.say("ATSW00");
    t.clock.sleepFor(link::ms(10'000));
    EXPECT_EQ(t.say("0100"), "BUS INIT: ...OK|48 6B 10 41 00 BE 3F B8 13 CC||>");
    EXPECT_EQ(t.say("ATSP6"), "OK||>");
    EXPECT_EQ(t.say("0100"), "UNABLE TO CONNECT||>") << "a K-line car has no CAN bus";
}

} // namespace
} // namespace kvx::sim::test
