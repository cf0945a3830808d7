#pragma once

#include <cstdint>
#include <string>

namespace kvx::link::decode {

// Readable words for the bit-mapped and enumerated parameters. Data spans hold at least the bytes
// the parameter needs; callers check the length first. Texts meant for a grid cell or a
// freeze-frame value column are at most 20 characters; the INFO lines may be longer.

// "01 03 0C" — the parameters a range bitmap marks as answered; base is the range's own number.
std::string supportedList(const std::uint8_t* data, int base);

// Two cells of monitor status. Since codes were cleared: "MIL on, 3 codes" and "1 of 7
// incomplete"; this drive cycle: "7 monitors enabled" and "1 not complete".
std::string monitorCell(const std::uint8_t* data, bool thisDriveCycle, int cell);
// One line per fact, ended by "\n": MIL, code count, ignition type, each monitor's state.
std::string monitorLines(const std::uint8_t* data, bool thisDriveCycle);

// The loop status of one fuel system ("not present" for 00).
std::string fuelSystemText(std::uint8_t status);
std::string secondaryAirText(std::uint8_t value);
// The standard a unit was built to: the full name for the INFO box, or its short form for a cell.
std::string obdStandardName(std::uint8_t value, bool shortForm = false);
std::string auxInputText(std::uint8_t value);
std::string fuelTypeName(std::uint8_t value);

// Oxygen-sensor position by its index (0-7) under the two-bank or the four-bank layout.
std::string sensorPosition(int index, bool fourBanks);
// "B1S1 B1S2 B2S1" for one cell: cell 1 holds the sensors of bits 0-3 (bank 1, or banks 1 and 2
// on four banks), cell 2 those of bits 4-7; "none" when that half has no sensor.
std::string sensorsPresentCell(std::uint8_t bits, bool fourBanks, int cell);
// "Bank 1: sensors 1, 2\n..." one line per bank that has a sensor.
std::string sensorsPresentLines(std::uint8_t bits, bool fourBanks);

} // namespace kvx::link::decode
