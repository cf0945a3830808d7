#pragma once

#include "link/Clock.h"
#include "link/KLineTiming.h"

#include <optional>
#include <vector>

namespace kvx::sim {

struct FiveBaudResult {
    std::optional<int> address;   // absent when the edges do not make a 5-baud byte
    link::Micros worstError = 0;  // largest distance of an edge from the 200 ms bit grid
};

// Reads a 5-baud byte (start bit low, 8 data bits LSB first, stop bit high; consecutive equal bits
// make no edge) from the edges after the start edge at lowEdge. edges alternate rising, falling, ...
// An edge further than tolerance from a bit boundary spoils the byte.
FiveBaudResult decodeFiveBaud(link::Micros lowEdge, const std::vector<link::Micros>& edges,
                              link::Micros tolerance);

using link::kline::kFiveBaudBit;
using link::kline::kFiveBaudByte;

} // namespace kvx::sim
