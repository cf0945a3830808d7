#include "sim/KLineFrames.h"

namespace kvx::sim {

namespace {

// Whole ISO 9141 request sizes by service (header 3 + service + parameters + checksum).
std::optional<std::size_t> iso9141Size(std::uint8_t service)
{
    switch (service) {
    case 0x03: case 0x04: case 0x07: return 5;
    case 0x01: case 0x06: case 0x09: return 6;
    case 0x02: case 0x05: return 7;
    default: return std::nullopt;
    }
}

std::size_t kwpHeaderSize(std::uint8_t format) { return (format & 0xC0) ? 3 : 1; }

} // namespace

std::optional<std::size_t> expectedFrameSize(Protocol protocol, const link::Bytes& partial)
{
    if (partial.empty())
        return std::nullopt;
    if (protocol == Protocol::Iso9141)
        return partial.size() >= 4 ? iso9141Size(partial[3]) : std::nullopt;
    const std::uint8_t format = partial[0];
    const std::size_t header = kwpHeaderSize(format);
    if ((format & 0x3F) != 0)
        return header + (format & 0x3F) + 1;
    if (partial.size() <= header)
        return std::nullopt;
    return header + 1 + partial[header] + 1;
}

std::optional<Request> parseRequest(Protocol protocol, const link::Bytes& frame)
{
    if (frame.size() < 4)
        return std::nullopt;
    link::Bytes body(frame.begin(), frame.end() - 1);
    if (link::checksum(body) != frame.back())
        return std::nullopt;
    Request r;
    r.protocol = protocol;
    if (protocol == Protocol::Iso9141) {
        if (frame[0] != 0x68 || frame[1] != 0x6A)
            return std::nullopt;
        r.functional = true;
        r.target = 0x33;
        r.source = frame[2];
        r.payload.assign(body.begin() + 3, body.end());
        return r;
    }
    const std::uint8_t format = frame[0];
    std::size_t at = kwpHeaderSize(format);
    r.addressed = at == 3;
    if (r.addressed) {
        r.target = frame[1];
        r.source = frame[2];
        r.functional = (format & 0xC0) == 0xC0;
    }
    if ((format & 0x3F) == 0)
        ++at;
    if (at > body.size())
        return std::nullopt;
    r.payload.assign(body.begin() + static_cast<long>(at), body.end());
    return r;
}

link::Bytes replyFrame(Protocol protocol, std::uint8_t unit, std::uint8_t tester, const link::Bytes& payload,
                       KwpHeader form)
{
    link::Bytes f;
    if (protocol == Protocol::Iso9141) {
        f = {0x48, 0x6B, unit};
    } else {
        const bool inFormat = !form.lengthByte && payload.size() <= 0x3F;
        f = {static_cast<std::uint8_t>((form.addresses ? 0x80 : 0x00) | (inFormat ? payload.size() : 0))};
        if (form.addresses) {
            f.push_back(tester);
            f.push_back(unit);
        }
        if (!inFormat)
            f.push_back(static_cast<std::uint8_t>(payload.size()));
    }
    f.insert(f.end(), payload.begin(), payload.end());
    f.push_back(link::checksum(f));
    return f;
}

bool kb1WantsAddresses(std::uint8_t kb1)
{
    // HB1 set, or HB0 clear (a unit naming no form takes the full one): 0x08 and 0x04.
    return (kb1 & 0x08) || !(kb1 & 0x04);
}

bool kb1WantsLengthByte(std::uint8_t kb1) { return (kb1 & 0x02) && !(kb1 & 0x01); }

} // namespace kvx::sim
