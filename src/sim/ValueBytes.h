#pragma once

#include "link/Hex.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>

namespace kvx::sim {

// A physical value as the raw bytes a unit reports: rounded and held to what the bytes can carry.
inline std::uint8_t u8(double v) { return static_cast<std::uint8_t>(std::clamp(std::lround(v), 0L, 255L)); }
inline link::Bytes one(double v) { return {u8(v)}; }
inline link::Bytes two(double v)
{
    const long n = std::clamp(std::lround(v), 0L, 65535L);
    return {static_cast<std::uint8_t>(n >> 8), static_cast<std::uint8_t>(n & 0xFF)};
}
// Two's complement, for values that may fall below zero.
inline link::Bytes signedOne(double v)
{
    return {static_cast<std::uint8_t>(std::clamp(std::lround(v), -128L, 127L) & 0xFF)};
}
inline link::Bytes signedTwo(double v)
{
    const long n = std::clamp(std::lround(v), -32768L, 32767L) & 0xFFFF;
    return {static_cast<std::uint8_t>(n >> 8), static_cast<std::uint8_t>(n & 0xFF)};
}
inline double pct(double p) { return p * 255.0 / 100.0; }
inline double trim(double p) { return p * 128.0 / 100.0 + 128.0; }
// Switches as the bits of one byte, bit 0 first.
inline std::uint8_t bits(std::initializer_list<bool> on)
{
    unsigned b = 0, bit = 1;
    for (bool v : on) {
        if (v)
            b |= bit;
        bit <<= 1;
    }
    return static_cast<std::uint8_t>(b);
}

} // namespace kvx::sim
