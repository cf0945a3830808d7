#include "sim/KLineFrames.h"

namespace kvx::sim {

using namespace link::kline;
using link::LineKind;

namespace {

// Whole ISO 9141 request sizes by service (header 3 + service + parameters + checksum).
std::optional<std::size_t> iso9141Size(std::uint8_t service)
{
    switch (service) {
    case kStoredCodes: case kClearCodes: case kPendingCodes: return 5;
    case kCurrentData: case kMonitorTests: case kVehicleInformation: return 6;
    case kFreezeFrame: case kOxygenTests: return 7;
    default: return std::nullopt;
    }
}

} // namespace

std::optional<std::size_t> expectedFrameSize(LineKind protocol, const link::Bytes& partial)
{
    if (partial.empty())
        return std::nullopt;
    if (protocol == LineKind::Iso9141)
        return partial.size() > kIsoHeaderSize ? iso9141Size(partial[kIsoHeaderSize]) : std::nullopt;
    const std::uint8_t format = partial[0];
    const std::size_t header = kwpHeaderSize(format);
    if ((format & kLengthMask) != 0)
        return header + (format & kLengthMask) + 1;
    if (partial.size() <= header)
        return std::nullopt;
    return header + 1 + partial[header] + 1;
}

std::optional<Request> parseRequest(LineKind protocol, const link::Bytes& frame)
{
    if (frame.size() < 4)
        return std::nullopt;
    link::Bytes body(frame.begin(), frame.end() - 1);
    if (link::checksum(body) != frame.back())
        return std::nullopt;
    Request r;
    r.protocol = protocol;
    if (protocol == LineKind::Iso9141) {
        if (frame[0] != kIsoRequest || frame[1] != kIsoRequestTarget)
            return std::nullopt;
        r.functional = true;
        r.target = kObdAddress;
        r.source = frame[2];
        r.payload.assign(body.begin() + kIsoHeaderSize, body.end());
        return r;
    }
    const std::uint8_t format = frame[0];
    r.addressed = kwpHeaderSize(format) == kKwpAddressedHeader;
    if (r.addressed) {
        r.target = frame[1];
        r.source = frame[2];
        r.functional = (format & kAddressMode) == kFunctional;
    }
    const std::size_t at = kwpServiceAt(format);
    if (at > body.size())
        return std::nullopt;
    r.payload.assign(body.begin() + static_cast<long>(at), body.end());
    return r;
}

link::Bytes replyFrame(LineKind protocol, std::uint8_t unit, std::uint8_t tester, const link::Bytes& payload,
                       KwpHeader form)
{
    link::Bytes f;
    if (protocol == LineKind::Iso9141) {
        f = {kIsoReply, kIsoReplyTarget, unit};
    } else {
        const bool inFormat = !form.lengthByte && payload.size() <= kMaxLengthInFormat;
        f = {static_cast<std::uint8_t>((form.addresses ? kPhysical : 0) | (inFormat ? payload.size() : 0))};
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

// A unit naming no header form takes the full one.
bool kb1WantsAddresses(std::uint8_t kb1) { return (kb1 & kKb1Addresses) || !(kb1 & kKb1NoAddresses); }

bool kb1WantsLengthByte(std::uint8_t kb1) { return (kb1 & kKb1LengthByte) && !(kb1 & kKb1LengthInFormat); }

} // namespace kvx::sim
