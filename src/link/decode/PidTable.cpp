#include "link/decode/PidTable.h"

#include <array>

namespace kvx::link::decode {

namespace {

constexpr double kPercent = 100.0 / 255.0;
constexpr double kTrim = 100.0 / 128.0;  // (A - 128) * 100 / 128 written as A * scale + offset
constexpr double kRatio = 2.0 / 65536.0;

using F = Form;
using U = Unit;

// Service 01/02 parameters of SAE J1979 as K-line units report them. The oxygen-sensor rows
// (14-1B, 24-2B, 34-3B) name their sensor from the layout at description time. Every description,
// sensor position included, fits the 40 characters a freeze-frame line gives it.
const PidRow kRows[] = {
    {0x00, "PIDs supported 01-20", 4, F::SupportBitmap},
    {0x01, "Monitor status since codes cleared", 4, F::MonitorStatus},
    {0x02, "Trouble code that set the freeze frame", 2, F::TroubleCode},
    {0x03, "Fuel system 1 / 2 status", 2, F::FuelSystem},
    {0x04, "Calculated engine load", 1, F::Byte, kPercent, 0, 1, U::Percent},
    {0x05, "Engine coolant temperature", 1, F::Byte, 1, -40, 0, U::Celsius},
    {0x06, "Short-term fuel trim Bank 1", 1, F::Byte, kTrim, -100, 1, U::Percent},
    {0x07, "Long-term fuel trim Bank 1", 1, F::Byte, kTrim, -100, 1, U::Percent},
    {0x08, "Short-term fuel trim Bank 2", 1, F::Byte, kTrim, -100, 1, U::Percent},
    {0x09, "Long-term fuel trim Bank 2", 1, F::Byte, kTrim, -100, 1, U::Percent},
    {0x0A, "Fuel pressure (gauge)", 1, F::Byte, 3, 0, 0, U::Kpa},
    {0x0B, "Intake manifold absolute pressure", 1, F::Byte, 1, 0, 0, U::KpaManifold},
    {0x0C, "Engine speed", 2, F::Word, 0.25, 0, 0, U::Rpm},
    {0x0D, "Vehicle speed", 1, F::Byte, 1, 0, 0, U::Kmh},
    {0x0E, "Ignition timing advance (cylinder 1)", 1, F::Byte, 0.5, -64, 1, U::Degrees},
    {0x0F, "Intake air temperature", 1, F::Byte, 1, -40, 0, U::Celsius},
    {0x10, "Mass air flow rate", 2, F::Word, 0.01, 0, 2, U::GramsPerSecond},
    {0x11, "Absolute throttle position", 1, F::Byte, kPercent, 0, 1, U::Percent},
    {0x12, "Commanded secondary air status", 1, F::SecondaryAir},
    {0x13, "Oxygen sensors present (2 banks)", 1, F::SensorsTwoBanks},
    {0x14, "O2 voltage / fuel trim", 2, F::O2Narrow},
    {0x15, "O2 voltage / fuel trim", 2, F::O2Narrow},
    {0x16, "O2 voltage / fuel trim", 2, F::O2Narrow},
    {0x17, "O2 voltage / fuel trim", 2, F::O2Narrow},
    {0x18, "O2 voltage / fuel trim", 2, F::O2Narrow},
    {0x19, "O2 voltage / fuel trim", 2, F::O2Narrow},
    {0x1A, "O2 voltage / fuel trim", 2, F::O2Narrow},
    {0x1B, "O2 voltage / fuel trim", 2, F::O2Narrow},
    {0x1C, "OBD requirements of the vehicle", 1, F::ObdStandard},
    {0x1D, "Oxygen sensors present (4 banks)", 1, F::SensorsFourBanks},
    {0x1E, "Auxiliary input status", 1, F::AuxInput},
    {0x1F, "Time since engine start", 2, F::Word, 1, 0, 0, U::Seconds},
    {0x20, "PIDs supported 21-40", 4, F::SupportBitmap},
    {0x21, "Distance travelled with MIL on", 2, F::Word, 1, 0, 0, U::Km},
    {0x22, "Fuel rail pressure (rel. to manifold)", 2, F::Word, 0.079, 0, 1, U::Kpa},
    {0x23, "Fuel rail pressure (gauge)", 2, F::Word, 10, 0, 0, U::Kpa},
    {0x24, "Wide O2 ratio / voltage", 4, F::O2WideVoltage},
    {0x25, "Wide O2 ratio / voltage", 4, F::O2WideVoltage},
    {0x26, "Wide O2 ratio / voltage", 4, F::O2WideVoltage},
    {0x27, "Wide O2 ratio / voltage", 4, F::O2WideVoltage},
    {0x28, "Wide O2 ratio / voltage", 4, F::O2WideVoltage},
    {0x29, "Wide O2 ratio / voltage", 4, F::O2WideVoltage},
    {0x2A, "Wide O2 ratio / voltage", 4, F::O2WideVoltage},
    {0x2B, "Wide O2 ratio / voltage", 4, F::O2WideVoltage},
    {0x2C, "Commanded EGR", 1, F::Byte, kPercent, 0, 1, U::Percent},
    {0x2D, "EGR error", 1, F::Byte, kTrim, -100, 1, U::Percent},
    {0x2E, "Commanded evaporative purge", 1, F::Byte, kPercent, 0, 1, U::Percent},
    {0x2F, "Fuel level input", 1, F::Byte, kPercent, 0, 1, U::Percent},
    {0x30, "Warm-ups since codes cleared", 1, F::Byte, 1, 0, 0, U::None},
    {0x31, "Distance travelled since codes cleared", 2, F::Word, 1, 0, 0, U::Km},
    {0x32, "Evaporative system vapour pressure", 2, F::SignedWord, 0.25, 0, 2, U::Pascal},
    {0x33, "Barometric pressure", 1, F::Byte, 1, 0, 0, U::KpaManifold},
    {0x34, "Wide O2 ratio / current", 4, F::O2WideCurrent},
    {0x35, "Wide O2 ratio / current", 4, F::O2WideCurrent},
    {0x36, "Wide O2 ratio / current", 4, F::O2WideCurrent},
    {0x37, "Wide O2 ratio / current", 4, F::O2WideCurrent},
    {0x38, "Wide O2 ratio / current", 4, F::O2WideCurrent},
    {0x39, "Wide O2 ratio / current", 4, F::O2WideCurrent},
    {0x3A, "Wide O2 ratio / current", 4, F::O2WideCurrent},
    {0x3B, "Wide O2 ratio / current", 4, F::O2WideCurrent},
    {0x3C, "Catalyst temperature Bank 1 Sensor 1", 2, F::Word, 0.1, -40, 1, U::Celsius},
    {0x3D, "Catalyst temperature Bank 2 Sensor 1", 2, F::Word, 0.1, -40, 1, U::Celsius},
    {0x3E, "Catalyst temperature Bank 1 Sensor 2", 2, F::Word, 0.1, -40, 1, U::Celsius},
    {0x3F, "Catalyst temperature Bank 2 Sensor 2", 2, F::Word, 0.1, -40, 1, U::Celsius},
    {0x40, "PIDs supported 41-60", 4, F::SupportBitmap},
    {0x41, "Monitor status this drive cycle", 4, F::DriveCycleStatus},
    {0x42, "Control module voltage", 2, F::Word, 0.001, 0, 3, U::Volts},
    {0x43, "Absolute load value", 2, F::Word, kPercent, 0, 1, U::Percent},
    {0x44, "Commanded equivalence ratio", 2, F::Word, kRatio, 0, 3, U::Ratio},
    {0x45, "Relative throttle position", 1, F::Byte, kPercent, 0, 1, U::Percent},
    {0x46, "Ambient air temperature", 1, F::Byte, 1, -40, 0, U::Celsius},
    {0x47, "Absolute throttle position B", 1, F::Byte, kPercent, 0, 1, U::Percent},
    {0x48, "Absolute throttle position C", 1, F::Byte, kPercent, 0, 1, U::Percent},
    {0x49, "Accelerator pedal position D", 1, F::Byte, kPercent, 0, 1, U::Percent},
    {0x4A, "Accelerator pedal position E", 1, F::Byte, kPercent, 0, 1, U::Percent},
    {0x4B, "Accelerator pedal position F", 1, F::Byte, kPercent, 0, 1, U::Percent},
    {0x4C, "Commanded throttle actuator", 1, F::Byte, kPercent, 0, 1, U::Percent},
    {0x4D, "Time run with MIL on", 2, F::Word, 1, 0, 0, U::Minutes},
    {0x4E, "Time since codes cleared", 2, F::Word, 1, 0, 0, U::Minutes},
    {0x4F, "Maximum ratio, O2 V, O2 mA, MAP", 4, F::MaxValues},
    {0x50, "Maximum mass air flow rate", 4, F::MaxAirFlow},
    {0x51, "Fuel type", 1, F::FuelType},
    {0x52, "Ethanol fuel", 1, F::Byte, kPercent, 0, 1, U::Percent},
    {0x53, "Absolute evap system vapour pressure", 2, F::Word, 0.005, 0, 3, U::Kpa},
    {0x54, "Evap system vapour pressure (wide)", 2, F::SignedWord, 1, 0, 0, U::Pascal},
    {0x55, "Short-term secondary O2 trim B1 / B3", 2, F::BytePair, kTrim, -100, 1, U::Percent},
    {0x56, "Long-term secondary O2 trim B1 / B3", 2, F::BytePair, kTrim, -100, 1, U::Percent},
    {0x57, "Short-term secondary O2 trim B2 / B4", 2, F::BytePair, kTrim, -100, 1, U::Percent},
    {0x58, "Long-term secondary O2 trim B2 / B4", 2, F::BytePair, kTrim, -100, 1, U::Percent},
    {0x59, "Fuel rail absolute pressure", 2, F::Word, 10, 0, 0, U::Kpa},
    {0x5A, "Relative accelerator pedal position", 1, F::Byte, kPercent, 0, 1, U::Percent},
    {0x5B, "Hybrid battery pack remaining life", 1, F::Byte, kPercent, 0, 1, U::Percent},
    {0x5C, "Engine oil temperature", 1, F::Byte, 1, -40, 0, U::Celsius},
    {0x5D, "Fuel injection timing", 2, F::Word, 1.0 / 128.0, -210, 2, U::Degrees},
    {0x5E, "Engine fuel rate", 2, F::Word, 0.05, 0, 2, U::LitresPerHour},
};

const AbsentPid kAbsent[] = {
    {0x5F, "emission requirements of heavy-duty vehicles; light-duty K-line units do not answer it"},
};

const UnitText kUnits[] = {
    /* None */ {"", "", 1, 0, 0},
    /* Percent */ {"%", "%", 1, 0, 0},
    /* Celsius */ {"\u00B0C", "\u00B0F", 1.8, 32, 0},
    /* Kpa */ {"kPa", "psi", 0.145038, 0, 1},
    /* KpaManifold */ {"kPa", "inHg", 0.2953, 0, 2},
    /* Rpm */ {"rpm", "rpm", 1, 0, 0},
    /* Kmh */ {"km/h", "mph", 0.621371, 0, 0},
    /* Km */ {"km", "mi", 0.621371, 0, 0},
    /* Degrees */ {"\u00B0", "\u00B0", 1, 0, 0},
    /* GramsPerSecond */ {"g/s", "lb/min", 0.132277, 0, 0},
    /* Volts */ {"V", "V", 1, 0, 0},
    /* Seconds */ {"s", "s", 1, 0, 0},
    /* Minutes */ {"min", "min", 1, 0, 0},
    /* Pascal */ {"Pa", "inH2O", 1.0 / 249.089, 0, 1},
    /* Ratio */ {"", "", 1, 0, 0},
    /* MilliAmps */ {"mA", "mA", 1, 0, 0},
    /* LitresPerHour */ {"L/h", "gal/h", 0.264172, 0, 0},
    /* Milliseconds */ {"ms", "ms", 1, 0, 0},
};

} // namespace

int bytesRead(Form form)
{
    switch (form) {
    case F::SecondaryAir:
    case F::SensorsTwoBanks:
    case F::SensorsFourBanks:
    case F::ObdStandard:
    case F::AuxInput:
    case F::FuelType:
    case F::Byte:
        return 1;
    case F::TroubleCode:
    case F::FuelSystem:
    case F::Word:
    case F::SignedWord:
    case F::BytePair:
    case F::O2Narrow:
        return 2;
    case F::SupportBitmap:
    case F::MonitorStatus:
    case F::DriveCycleStatus:
    case F::O2WideVoltage:
    case F::O2WideCurrent:
    case F::MaxValues:
    case F::MaxAirFlow:
        return 4;
    }
    return 0;
}

const UnitText& unitText(Unit unit)
{
    return kUnits[static_cast<int>(unit)];
}

std::span<const PidRow> pidRows()
{
    return kRows;
}

std::span<const AbsentPid> absentPids()
{
    return kAbsent;
}

const PidRow* findPid(int pid)
{
    // A direct index: decoding a live-data message costs one array read, not a search.
    static const auto index = [] {
        std::array<const PidRow*, 256> all{};
        for (const auto& row : kRows)
            all[row.pid] = &row;
        return all;
    }();
    return pid >= 0 && pid < 256 ? index[static_cast<std::size_t>(pid)] : nullptr;
}

} // namespace kvx::link::decode
