#pragma once

#include "link/Hex.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvx::link {

// One CAN frame as an ELM327 shows it with headers on: the identifier, then the data bytes
// (the ISO-TP protocol byte first).
struct CanLine {
    std::uint32_t id = 0;
    Bytes data;
};

// An answer line read as a CAN frame: three hex digits of an 11-bit identifier or eight of a
// 29-bit one, then whole bytes; nullopt when the line is not that.
std::optional<CanLine> readCanLine(std::string_view hexLine, bool extended);

// The answer's messages in the form the rest of the system reads, and why anything was passed on
// as it came.
struct CanMessages {
    std::vector<Bytes> messages;
    std::vector<std::string> notes;
};

// Joins the ISO-TP frames of each unit, gives every message the K-line header 48 6B <unit> (7E8+n
// is unit 10+8n, 18DAF1xx is unit xx) and a checksum, and writes the services whose CAN form
// differs from the K-line one as the K-line form: trouble codes without their count byte and
// three to a message, information items four bytes to a numbered message, monitor results one
// test to a message. A frame that cannot be placed is passed on as it came, with a note.
CanMessages normaliseCanAnswer(const std::vector<CanLine>& lines);

} // namespace kvx::link
