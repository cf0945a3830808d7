#pragma once

#include "link/LinkSession.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvx::link::decode {

// How a unit-and-scaling ID turns a two-byte test value into a quantity.
struct MonitorScaling {
    bool isSigned = false;
    double scale = 1.0;
    double offset = 0.0;
    int decimals = 0;
    const char* unit = "";
};

// The scaling of a unit-and-scaling ID; nullopt for IDs without a public scaling.
std::optional<MonitorScaling> monitorScaling(std::uint8_t id);
// A two-byte value as its ID scales it ("0.450 V"); the raw count for an unknown ID.
std::string scaledMonitorValue(std::uint8_t id, std::uint16_t raw);

// The standard name of an on-board monitor ("Catalyst Monitor Bank 1"); "" for the
// manufacturer's own.
std::string monitorName(std::uint8_t obdmid);

// A mode 06 message in the CAN form, one test: header, 46, OBDMID, TID, unit-and-scaling ID,
// value, minimum, maximum (two bytes each), checksum. Two rows: the minimum limit, then the
// maximum, each with its pass/fail. Empty when the message is not that form.
std::vector<MonitorTestTexts> formatCanMonitorTest(std::string_view message);

} // namespace kvx::link::decode
