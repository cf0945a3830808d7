#pragma once

#include <cstdint>
#include <string>

namespace kvx::link::decode {

// Readable words for the bit-mapped and enumerated parameters. Data spans hold at least the bytes
// the parameter needs; callers check the length first.

// "01 03 0C" — the parameters a range bitmap marks as answered; base is the range's own number.
std::string supportedList(const std::uint8_t* data, int base);

// One line for a grid cell: MIL, code count and how many supported monitors are incomplete.
std::string monitorSummary(const std::uint8_t* data, bool thisDriveCycle);
// One line per fact, ended by "\n": MIL, code count, ignition type, each monitor's state.
std::string monitorLines(const std::uint8_t* data, bool thisDriveCycle);

std::string fuelSystemText(std::uint8_t system1, std::uint8_t system2);
std::string secondaryAirText(std::uint8_t value);
std::string obdStandardName(std::uint8_t value);
std::string auxInputText(std::uint8_t value);
std::string fuelTypeName(std::uint8_t value);

// Oxygen-sensor position by its index (0-7) under the two-bank or the four-bank layout.
std::string sensorPosition(int index, bool fourBanks);
// "B1S1 B1S2 B2S1" for a grid cell; "none" when no bit is set.
std::string sensorsPresentShort(std::uint8_t bits, bool fourBanks);
// "Bank 1: sensors 1, 2\n..." one line per bank that has a sensor.
std::string sensorsPresentLines(std::uint8_t bits, bool fourBanks);

} // namespace kvx::link::decode
