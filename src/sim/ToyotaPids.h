#pragma once

#include "link/Hex.h"
#include "sim/PidTable.h"

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

namespace kvx::sim {

// The data bytes of parameter B0-FF for a unit that answers the given ranges (any of B0, C0, E0;
// B0 holds B1-BF, C0 holds C1-DF, E0 the rest): B0, C0 and E0 are support bitmaps of the 32
// parameters after them (B0 reaches up to D0, so it overlaps C0); nullopt for a parameter the unit
// lacks or a range it does not answer.
std::optional<link::Bytes> encodeToyotaPid(std::uint8_t pid, const PidContext& ctx, const std::set<std::uint8_t>& ranges);

} // namespace kvx::sim
