#pragma once

#include "link/Hex.h"
#include "sim/PidTable.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace kvx::sim {

// The Toyota engine unit's own service 01 parameters above B0.
const std::vector<PidEntry>& toyotaPids();

// The data bytes of parameter B0-FF: B0, C0 and E0 are support bitmaps of the 32 parameters after
// them (B0 reaches up to D0, so it overlaps C0); nullopt for a parameter the unit lacks.
std::optional<link::Bytes> encodeToyotaPid(std::uint8_t pid, const PidContext& ctx);

} // namespace kvx::sim
