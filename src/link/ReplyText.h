#pragma once

#include "link/Hex.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvx::link {

// The one place that knows where the parts of a reply message sit. A message is a whole frame as
// it arrived: the header, an optional length byte, the service, its data and the checksum. The
// header is three bytes (format, target, source) when the format byte has address bits and the
// format byte alone when it has none; a length byte follows it when the format byte's low six bits
// are 0. An ISO 9141 reply (48 6B ..) reads the same way: 0x48 has address bits and a non-zero low part.

// The messages of a reply text, split at ":"; none for an empty reply.
std::vector<std::string> splitReply(std::string_view reply);

// The first message of a reply text: everything before the first ":".
std::string_view firstMessage(std::string_view reply);

struct ReplyMessage {
    std::optional<std::uint8_t> source; // absent in the one-byte header form
    std::uint8_t service = 0;
    Bytes data; // after the service, before the checksum
};

// The first message of a reply text taken apart; nullopt when it is not hex or too short to hold
// its header, a service and a checksum.
std::optional<ReplyMessage> readMessage(std::string_view message);

// Two hex digits of the source address, service or data byte n (0 is the first after the service)
// of the first message; "" when the message does not hold it.
std::string sourceText(std::string_view message);
std::string serviceText(std::string_view message);
std::string dataText(std::string_view message, std::size_t n);

// True when the first message's last byte is the modulo-256 sum of the others.
bool checksumHolds(std::string_view message);

// A generic request: the two header bytes, the tester's address F1, the service and its parameters.
std::string genericRequest(std::string_view header1, std::string_view header2, std::string_view service,
                           std::string_view parameters = {});

} // namespace kvx::link
