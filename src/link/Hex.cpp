#include "link/Hex.h"

namespace kvx::link {

namespace {
int nibble(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}
constexpr char kDigits[] = "0123456789ABCDEF";
} // namespace

std::string toHex(std::uint8_t byte)
{
    return {kDigits[byte >> 4], kDigits[byte & 0x0F]};
}

std::string toHex(const Bytes& bytes)
{
    std::string out;
    out.reserve(bytes.size() * 2);
    for (auto b : bytes) {
        out += kDigits[b >> 4];
        out += kDigits[b & 0x0F];
    }
    return out;
}

std::optional<Bytes> fromHex(std::string_view text)
{
    if (text.size() % 2 != 0)
        return std::nullopt;
    Bytes out;
    out.reserve(text.size() / 2);
    for (std::size_t i = 0; i < text.size(); i += 2) {
        int hi = nibble(text[i]), lo = nibble(text[i + 1]);
        if (hi < 0 || lo < 0)
            return std::nullopt;
        out.push_back(static_cast<std::uint8_t>(hi * 16 + lo));
    }
    return out;
}

std::optional<std::uint8_t> hexByteAt(std::string_view text, std::size_t pos)
{
    if (pos + 2 > text.size())
        return std::nullopt;
    int hi = nibble(text[pos]), lo = nibble(text[pos + 1]);
    if (hi < 0 || lo < 0)
        return std::nullopt;
    return static_cast<std::uint8_t>(hi * 16 + lo);
}

std::uint8_t checksum(const Bytes& bytes)
{
    unsigned sum = 0;
    for (auto b : bytes)
        sum += b;
    return static_cast<std::uint8_t>(sum & 0xFF);
}

} // namespace kvx::link
