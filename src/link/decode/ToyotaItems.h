#pragma once

#include "link/decode/PidTable.h"

#include <cstdint>
#include <span>

namespace kvx::link::decode {

// One sub-value of a Toyota parameter: a, the data byte it starts at (1 = the first after the
// parameter), and b, 0 for a value or 1-8 for bit b-1 of byte a as a switch.
struct ToyotaItem {
    std::uint8_t parameter;
    std::uint8_t a;
    std::uint8_t b;
    const char* name;
    std::uint8_t bytes;  // a value's bytes from a, high byte first; 1 for a switch
    double scale = 1.0;
    double offset = 0.0;
    std::uint8_t decimals = 0;
    Unit unit = Unit::None;
};

// An ISO 9141 reply carries 41, the parameter and at most five data bytes.
inline constexpr int kToyotaMaxDataBytes = 5;

std::span<const ToyotaItem> toyotaItems();

// The row of a sub-value, nullptr for an unused slot.
const ToyotaItem* findToyotaItem(int parameter, int a, int b);

} // namespace kvx::link::decode
