#pragma once

#include "link/Hex.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace kvx::link::decode {

// One reply message split into its parts. The text is a whole frame: three header bytes, the
// service, its data and the checksum.
struct Message {
    std::uint8_t source = 0;
    std::uint8_t service = 0;
    Bytes data;  // the bytes between the service and the checksum
};

// The first message of a reply text (the part before any ":"); nullopt when it is not hex or is
// too short to hold a header, a service and a checksum.
std::optional<Message> parseMessage(std::string_view text);

// True when the last byte is the modulo-256 sum of the others.
bool checksumMatches(std::string_view text);

} // namespace kvx::link::decode
