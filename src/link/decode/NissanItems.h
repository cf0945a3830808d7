#pragma once

#include "link/decode/PidTable.h"

#include <cstdint>
#include <span>

namespace kvx::link::decode {

// Which unit types have an item: the engine unit (module 1), the transmission unit (module 2).
enum NissanUnits : std::uint8_t { NissanEngine = 1, NissanGearbox = 2, NissanBoth = 3 };

enum class NissanForm : std::uint8_t {
    Unsigned,  // the bytes, high byte first, * scale + offset
    Signed,    // the same read as a two's-complement number
    Switches,  // a register of eight on/off switches, one a bit (block 13)
};

struct NissanItem {
    std::uint16_t identifier;  // block byte, then low byte
    std::uint8_t units;        // NissanUnits bits
    const char* name;
    std::uint8_t bytes;
    NissanForm form;
    double scale = 1.0;
    double offset = 0.0;
    std::uint8_t decimals = 0;
    Unit unit = Unit::None;  // metric and US texts, and the US conversion
};

// The name of one switch of a register; bits without a row have no name.
struct NissanSwitch {
    std::uint16_t identifier;
    std::uint8_t units;
    std::uint8_t bit;
    const char* name;
};

std::span<const NissanItem> nissanItems();
std::span<const NissanSwitch> nissanSwitches();

// Whether a form is defined for that many data bytes.
bool nissanFormReads(NissanForm form, int bytes);

// The item a unit type (1 or 2) has at an identifier, nullptr when none.
const NissanItem* findNissanItem(int identifier, int moduleIndex);
// The name of a register's switch for a unit type, nullptr when the bit is unnamed.
const char* findNissanSwitch(int identifier, int bit, int moduleIndex);

} // namespace kvx::link::decode
