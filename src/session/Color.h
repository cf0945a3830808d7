#pragma once

#include <cstdint>

namespace kvx {

// Colours as 0xRRGGBB; 0 is the default (black text, no highlight).
using Rgb = std::uint32_t;
constexpr Rgb kBlack = 0x000000;
constexpr Rgb kRed = 0xFF0000;
constexpr Rgb kGreen = 0x00FF00;

} // namespace kvx
