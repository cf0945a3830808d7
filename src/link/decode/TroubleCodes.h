#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kvx::link::decode {

// The five-character J2012 form of one code: letter from the two high bits of the first byte
// (P, C, B, U), the next two bits as a digit 0-3, then three hex digits.
std::string troubleCode(std::uint8_t high, std::uint8_t low);

// The codes carried by the first `count` messages of a service 43/47 reply, written one after
// another ("P0301P0420"); the all-zero filler pairs are dropped. "" when none decode.
std::string formatTroubleCodes(std::string_view reply, int count);

} // namespace kvx::link::decode
