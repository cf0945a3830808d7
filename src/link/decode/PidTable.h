#pragma once

#include <cstdint>
#include <span>

namespace kvx::link::decode {

// How a parameter's data bytes become a value. Scaled forms use the row's scale and offset.
enum class Form : std::uint8_t {
    SupportBitmap,     // which of the next 32 parameters the unit answers
    MonitorStatus,     // MIL, code count, monitors supported and complete (since codes cleared)
    DriveCycleStatus,  // monitors enabled and complete this drive cycle
    TroubleCode,       // the code that stored the freeze frame
    FuelSystem,        // loop status of fuel systems 1 and 2
    SecondaryAir,
    SensorsTwoBanks,   // oxygen sensors present, up to four on each of two banks
    SensorsFourBanks,  // oxygen sensors present, up to two on each of four banks
    ObdStandard,
    AuxInput,
    FuelType,
    Byte,              // A * scale + offset
    Word,              // (256A + B) * scale + offset
    SignedWord,        // two's-complement (256A + B) * scale + offset
    BytePair,          // A and B, each * scale + offset
    O2Narrow,          // A / 200 V; B as fuel trim, FF meaning the sensor is not used for trim
    O2WideVoltage,     // equivalence ratio (AB) and sensor voltage (CD)
    O2WideCurrent,     // equivalence ratio (AB) and sensor current (CD)
    MaxValues,         // largest ratio, O2 voltage, O2 current and manifold pressure reported
    MaxAirFlow,        // largest air flow reported (A * 10 g/s)
};

// The data bytes a form reads; a row's byte count must agree.
int bytesRead(Form form);

enum class Unit : std::uint8_t {
    None, Percent, Celsius, Kpa, KpaManifold, Rpm, Kmh, Km, Degrees, GramsPerSecond, Volts,
    Seconds, Minutes, Pascal, Ratio, MilliAmps, LitresPerHour, Milliseconds
};

struct UnitText {
    const char* metric;
    const char* us;
    double usFactor;   // us = metric * factor + offset
    double usOffset;
    int usExtraDecimals;
};
const UnitText& unitText(Unit unit);

struct PidRow {
    std::uint8_t pid;
    const char* description;
    std::uint8_t bytes;
    Form form;
    double scale = 1.0;
    double offset = 0.0;
    std::uint8_t decimals = 0;
    Unit unit = Unit::None;
};

// A parameter of the 00-5F range that we do not decode, and why.
struct AbsentPid {
    std::uint8_t pid;
    const char* reason;
};

std::span<const PidRow> pidRows();
std::span<const AbsentPid> absentPids();
// The row of a parameter, or nullptr when the table has none.
const PidRow* findPid(int pid);

} // namespace kvx::link::decode
