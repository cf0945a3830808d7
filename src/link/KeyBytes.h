#pragma once

#include "link/Clock.h"
#include "link/Protocol.h"

#include <cstdint>
#include <string>

namespace kvx::link {

// How KWP2000 headers are written on this session: with target and source addresses or the
// one-byte form, and the length in the format byte or in a byte of its own.
struct HeaderForm {
    bool addresses = true;
    bool lengthInFormat = true;
    bool lengthByte = true;
};

// What a unit's key bytes say about the session it opens.
struct KeyBytesMeaning {
    bool accepted = false;
    bool kwp = false;
    Micros p2Min = 0;
    HeaderForm form;
    std::string why; // plain words when refused
};

// ISO 9141-2 takes 08 08 or 94 94; ISO 14230 takes KB2 8F, KB1's parity bit ignored.
KeyBytesMeaning interpretKeyBytes(Protocol protocol, std::uint8_t kb1, std::uint8_t kb2);

} // namespace kvx::link
