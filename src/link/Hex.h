#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvx::link {

using Bytes = std::vector<std::uint8_t>;

// Upper-case hex pairs without separators: the text form of every request and reply.
std::string toHex(const Bytes& bytes);
std::string toHex(std::uint8_t byte);
// Empty optional when the text is not whole hex pairs.
std::optional<Bytes> fromHex(std::string_view text);
// The byte at characters [pos, pos+2) of a hex text (0-based), or nullopt when absent or not hex.
std::optional<std::uint8_t> hexByteAt(std::string_view text, std::size_t pos);
std::uint8_t checksum(const Bytes& bytes);

} // namespace kvx::link
