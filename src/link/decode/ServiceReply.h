#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kvx::link::decode {

// A reply in plain words: "Trouble codes cleared" for 44, "Service 04 refused: conditions not
// correct (22)" for a negative reply; "" when the message does not parse.
std::string formatServiceReply(std::string_view message);

// The meaning of a negative response code.
std::string negativeResponseText(std::uint8_t code);

} // namespace kvx::link::decode
