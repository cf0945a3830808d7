#include "link/decode/ToyotaItems.h"

#include <algorithm>

namespace kvx::link::decode {

namespace {

constexpr double kPercent = 100.0 / 255.0;
constexpr double kTrim = 100.0 / 128.0;

using U = Unit;

const ToyotaItem kItems[] = {
    {0xB1, 1, 0, "Engine speed", 2, 0.25, 0, 0, U::Rpm},
    {0xB1, 3, 0, "Vehicle speed", 1, 1, 0, 0, U::Kmh},
    {0xB2, 1, 0, "Injector pulse width", 2, 0.01, 0, 2, U::Milliseconds},
    {0xB2, 3, 0, "Ignition advance", 1, 0.5, -64, 1, U::Degrees},
    {0xB3, 1, 0, "Idle air control", 1, kPercent, 0, 1, U::Percent},
    {0xB3, 2, 0, "Calculated load", 1, kPercent, 0, 1, U::Percent},
    {0xC1, 1, 0, "Coolant temperature", 1, 1, -40, 0, U::Celsius},
    {0xC1, 2, 0, "Intake air temperature", 1, 1, -40, 0, U::Celsius},
    {0xC1, 3, 0, "Battery voltage", 1, 0.1, 0, 1, U::Volts},
    {0xC2, 1, 1, "Idle switch", 1},
    {0xC2, 1, 2, "Starter signal", 1},
    {0xC2, 1, 3, "A/C signal", 1},
    {0xC2, 1, 4, "Neutral position switch", 1},
    {0xC2, 1, 5, "Stop light switch", 1},
    {0xC2, 1, 6, "Electrical load signal", 1},
    {0xC2, 1, 8, "Vehicle stopped", 1},
    {0xE1, 1, 0, "Throttle position", 1, kPercent, 0, 1, U::Percent},
    {0xE1, 2, 0, "Throttle sensor voltage", 1, 0.02, 0, 2, U::Volts},
    {0xE2, 1, 0, "Short-term fuel trim", 1, kTrim, -100, 1, U::Percent},
    {0xE2, 2, 0, "Long-term fuel trim", 1, kTrim, -100, 1, U::Percent},
};

} // namespace

std::span<const ToyotaItem> toyotaItems() { return kItems; }

const ToyotaItem* findToyotaItem(int parameter, int a, int b)
{
    const auto it = std::find_if(std::begin(kItems), std::end(kItems), [&](const ToyotaItem& i) {
        return i.parameter == parameter && i.a == a && i.b == b;
    });
    return it == std::end(kItems) ? nullptr : &*it;
}

} // namespace kvx::link::decode
