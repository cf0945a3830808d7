#include "link/decode/NissanItems.h"

#include <algorithm>

namespace kvx::link::decode {

namespace {

constexpr double kPercent = 100.0 / 255.0;
constexpr double kTrim = 100.0 / 128.0;

using F = NissanForm;
using U = Unit;
constexpr std::uint8_t E = NissanEngine;
constexpr std::uint8_t T = NissanGearbox;
constexpr std::uint8_t B = NissanBoth;

// Block 11 holds the measured values, block 12 the actuators, block 13 the switch registers.
// Low bytes 20 and 40 of a block stand for the next range in the support bitmaps, never an item.
const NissanItem kItems[] = {
    {0x1101, E, "Engine speed", 2, F::Unsigned, 1, 0, 0, U::Rpm},
    {0x1101, T, "Turbine speed", 2, F::Unsigned, 1, 0, 0, U::Rpm},
    {0x1102, E, "Coolant temperature", 1, F::Unsigned, 1, -50, 0, U::Celsius},
    {0x1102, T, "Fluid temperature", 1, F::Unsigned, 1, -50, 0, U::Celsius},
    {0x1103, B, "Vehicle speed", 1, F::Unsigned, 1, 0, 0, U::Kmh},
    {0x1104, B, "Battery voltage", 1, F::Unsigned, 0.08, 0, 2, U::Volts},
    {0x1105, E, "Throttle sensor voltage", 1, F::Unsigned, 0.02, 0, 2, U::Volts},
    {0x1105, T, "Output shaft speed", 2, F::Unsigned, 1, 0, 0, U::Rpm},
    {0x1106, B, "Throttle angle", 1, F::Unsigned, 0.5, 0, 1, U::Degrees},
    {0x1107, E, "Injection time (bank 1)", 2, F::Unsigned, 0.01, 0, 2, U::Milliseconds},
    {0x1107, T, "Gear position", 1, F::Unsigned, 1, 0, 0, U::None},
    {0x1108, E, "Ignition timing (BTDC)", 1, F::Signed, 1, 0, 0, U::Degrees},
    {0x1108, T, "Line pressure solenoid duty", 1, F::Unsigned, kPercent, 0, 1, U::Percent},
    {0x1109, E, "Idle air control valve opening", 1, F::Unsigned, kPercent, 0, 1, U::Percent},
    {0x1109, T, "Lock-up solenoid duty", 1, F::Unsigned, kPercent, 0, 1, U::Percent},
    {0x110A, E, "Air flow meter voltage", 1, F::Unsigned, 0.02, 0, 2, U::Volts},
    {0x110A, T, "Torque converter slip", 2, F::Signed, 1, 0, 0, U::Rpm},
    {0x110B, E, "Intake air temperature", 1, F::Unsigned, 1, -50, 0, U::Celsius},
    {0x110C, E, "Short-term fuel trim", 1, F::Unsigned, kTrim, -100, 1, U::Percent},
    {0x110D, E, "Long-term fuel trim", 1, F::Unsigned, kTrim, -100, 1, U::Percent},
    {0x110E, E, "O2 sensor voltage (bank 1)", 1, F::Unsigned, 0.005, 0, 3, U::Volts},
    {0x110F, E, "Target idle speed", 1, F::Unsigned, 10, 0, 0, U::Rpm},
    {0x1110, E, "Calculated load", 1, F::Unsigned, kPercent, 0, 1, U::Percent},
    {0x1111, E, "Mass air flow", 2, F::Unsigned, 0.01, 0, 2, U::GramsPerSecond},
    {0x1121, E, "Fuel temperature", 1, F::Unsigned, 1, -50, 0, U::Celsius},
    {0x1122, E, "Intake manifold pressure", 1, F::Unsigned, 1, 0, 0, U::KpaManifold},
    {0x1123, E, "Barometric pressure", 1, F::Unsigned, 1, 0, 0, U::KpaManifold},
    {0x1141, E, "Knock retard", 1, F::Unsigned, 0.5, 0, 1, U::Degrees},
    {0x1160, E, "Time since engine start", 2, F::Unsigned, 1, 0, 0, U::Seconds},
    {0x1201, E, "Fuel pump duty", 1, F::Unsigned, kPercent, 0, 1, U::Percent},
    {0x1202, E, "Canister purge duty", 1, F::Unsigned, kPercent, 0, 1, U::Percent},
    {0x1203, E, "EGR valve opening", 1, F::Unsigned, kPercent, 0, 1, U::Percent},
    {0x1301, E, "Engine switches 1", 1, F::Switches},
    {0x1301, T, "Selector switches", 1, F::Switches},
    {0x1302, E, "Engine switches 2", 1, F::Switches},
    {0x1302, T, "Solenoid outputs", 1, F::Switches},
    {0x1303, E, "Engine switches 3", 1, F::Switches},
};

const NissanSwitch kSwitches[] = {
    {0x1301, E, 0, "Starter signal"},
    {0x1301, E, 1, "Closed throttle position"},
    {0x1301, E, 2, "Park/neutral switch"},
    {0x1301, E, 3, "Power steering signal"},
    {0x1301, E, 4, "A/C signal"},
    {0x1301, E, 5, "Electrical load signal"},
    {0x1302, E, 0, "Fuel pump relay"},
    {0x1302, E, 1, "Cooling fan (low)"},
    {0x1302, E, 2, "Cooling fan (high)"},
    {0x1302, E, 3, "Heater fan switch"},
    {0x1302, E, 7, "Brake switch"},
    {0x1301, T, 0, "Overdrive switch"},
    {0x1301, T, 1, "Park/neutral switch"},
    {0x1301, T, 2, "Drive position switch"},
    {0x1301, T, 3, "Second position switch"},
    {0x1301, T, 4, "First position switch"},
    {0x1301, T, 5, "Reverse position switch"},
    {0x1301, T, 6, "Kickdown switch"},
    {0x1301, T, 7, "Brake switch"},
    {0x1302, T, 0, "Shift solenoid A"},
    {0x1302, T, 1, "Shift solenoid B"},
    {0x1302, T, 2, "Overrun clutch solenoid"},
    {0x1302, T, 3, "Lock-up solenoid"},
};

bool forUnit(std::uint8_t units, int moduleIndex)
{
    return (moduleIndex == 1 || moduleIndex == 2) && (units & moduleIndex) != 0;
}

} // namespace

std::span<const NissanItem> nissanItems() { return kItems; }
std::span<const NissanSwitch> nissanSwitches() { return kSwitches; }

bool nissanFormReads(NissanForm form, int bytes)
{
    switch (form) {
    case NissanForm::Unsigned:
    case NissanForm::Signed:
        return bytes == 1 || bytes == 2;
    case NissanForm::Switches:
        return bytes == 1;
    }
    return false;
}

const NissanItem* findNissanItem(int identifier, int moduleIndex)
{
    const auto it = std::find_if(std::begin(kItems), std::end(kItems), [&](const NissanItem& i) {
        return i.identifier == identifier && forUnit(i.units, moduleIndex);
    });
    return it == std::end(kItems) ? nullptr : &*it;
}

const char* findNissanSwitch(int identifier, int bit, int moduleIndex)
{
    const auto it = std::find_if(std::begin(kSwitches), std::end(kSwitches), [&](const NissanSwitch& s) {
        return s.identifier == identifier && s.bit == bit && forUnit(s.units, moduleIndex);
    });
    return it == std::end(kSwitches) ? nullptr : it->name;
}

} // namespace kvx::link::decode
