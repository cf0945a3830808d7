#pragma once

#include "link/Hex.h"
#include "sim/DriveProfile.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace kvx::sim {

// What a unit knows when it answers a service 01 or 02 parameter.
struct PidContext {
    EngineState state;
    bool mil = false;
    int storedCodes = 0;
    double secondsSinceClear = 0;
    double kmSinceClear = 0;
    double kmWithMil = 0;
    double secondsWithMil = 0;
    int warmUpsSinceClear = 0;
};

struct PidEntry {
    std::uint8_t pid;
    link::Bytes (*encode)(const PidContext&);
};

// The built-in car's service 01 parameters, following its drive, by number (bitmaps 00/20/40 are
// worked out, not listed).
const std::vector<PidEntry>& enginePids();

// The 4-byte support bitmap of the range after base for the given parameters: bit 7 of the first
// byte is base+1; the last bit says whether the next range has any parameter.
link::Bytes supportBitmap(const std::vector<std::uint8_t>& pids, std::uint8_t base);

// The bitmap at base (a multiple of 20) for these parameters; nullopt when the range is not reached:
// it holds no parameter and no earlier bitmap pointed at it.
std::optional<link::Bytes> rangeBitmap(const std::vector<std::uint8_t>& pids, std::uint8_t base);

// The data bytes of a parameter (bitmaps included); nullopt when the table lacks it.
std::optional<link::Bytes> encodePid(const std::vector<PidEntry>& table, std::uint8_t pid, const PidContext& ctx);

} // namespace kvx::sim
