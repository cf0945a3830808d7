#pragma once

#include "link/Hex.h"
#include "sim/EcuModel.h"

#include <cstddef>
#include <optional>

namespace kvx::sim {

// How many bytes the tester frame in progress will have, once its first bytes tell; nullopt while
// that is not known yet (or never will be: an ISO 9141 request of a service without a fixed size).
std::optional<std::size_t> expectedFrameSize(link::LineKind protocol, const link::Bytes& partial);

// Takes a whole tester frame apart; nullopt when the checksum or the header is wrong.
std::optional<Request> parseRequest(link::LineKind protocol, const link::Bytes& frame);

// How a unit writes an ISO 14230 header: with target and source or the format byte alone, and the
// length in the format byte (a separate length byte beyond 63 bytes) or always in a byte of its own.
struct KwpHeader {
    bool addresses = true;
    bool lengthByte = false;
};

// A unit's reply frame: ISO 9141 "48 6B <unit>", ISO 14230 in the given header form; checksum appended.
link::Bytes replyFrame(link::LineKind protocol, std::uint8_t unit, std::uint8_t tester, const link::Bytes& payload,
                       KwpHeader form = {});

// Whether an ISO 14230 KB1 asks the tester for headers with target and source addresses.
bool kb1WantsAddresses(std::uint8_t kb1);
// Whether an ISO 14230 KB1 names the separate length byte as the only length form (AL1 without AL0).
bool kb1WantsLengthByte(std::uint8_t kb1);

} // namespace kvx::sim
