#include "link/decode/Message.h"

namespace kvx::link::decode {

namespace {
constexpr std::size_t kHeaderBytes = 3;

std::string_view firstPart(std::string_view text)
{
    return text.substr(0, text.find(':'));
}
} // namespace

std::optional<Message> parseMessage(std::string_view text)
{
    const auto bytes = fromHex(firstPart(text));
    if (!bytes || bytes->size() < kHeaderBytes + 2)
        return std::nullopt;
    Message m;
    m.source = (*bytes)[2];
    m.service = (*bytes)[kHeaderBytes];
    m.data.assign(bytes->begin() + kHeaderBytes + 1, bytes->end() - 1);
    return m;
}

bool checksumMatches(std::string_view text)
{
    const auto bytes = fromHex(firstPart(text));
    if (!bytes || bytes->empty())
        return false;
    const Bytes body(bytes->begin(), bytes->end() - 1);
    return checksum(body) == bytes->back();
}

} // namespace kvx::link::decode
