#pragma once

#include <cstdint>

namespace kvx::sim {

// Every chance in the virtual vehicle is drawn from this stateless 64-bit mix (the SplitMix64
// finaliser) of a seed and a number, so a run repeats exactly and no draw depends on an earlier one.
inline std::uint64_t mix(std::uint64_t x)
{
    x += 0x9E3779B97F4A7C15ull;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ull;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBull;
    return x ^ (x >> 31);
}

} // namespace kvx::sim
