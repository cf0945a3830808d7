#include "sim/TransmissionUnit.h"

#include "sim/DriveProfile.h"
#include "sim/PidTable.h"

namespace kvx::sim {

using namespace link::kline;

namespace {

const std::vector<PidEntry> kGearbox = {
    {0x01, [](const PidContext&) { return link::Bytes{0x00, 0x00, 0x00, 0x00}; }},
    {0x0D, [](const PidContext& c) { return link::Bytes{static_cast<std::uint8_t>(c.state.speedKmh + 0.5)}; }},
    {0x1C, [](const PidContext&) { return link::Bytes{0x06}; }},
};

} // namespace

TransmissionUnit::TransmissionUnit(link::Clock& clock, std::uint64_t seed)
    : seed_(seed), start_(clock.now())
{
}

std::vector<link::Bytes> TransmissionUnit::answer(const Request& r)
{
    const std::uint8_t service = r.payload.front();
    PidContext ctx;
    ctx.state = engineStateAt(static_cast<double>(r.time - start_) / 1e6, seed_);
    switch (service) {
    case kCurrentData: {
        if (r.payload.size() < 2)
            return {negative(service, kSubFunctionNotSupported)};
        const auto data = encodePid(kGearbox, r.payload[1], ctx);
        if (!data)
            return lacking(r, kSubFunctionNotSupported);
        link::Bytes reply{positiveReply(kCurrentData), r.payload[1]};
        reply.insert(reply.end(), data->begin(), data->end());
        return {reply};
    }
    case kStoredCodes: return {{positiveReply(kStoredCodes), 0, 0, 0, 0, 0, 0}};
    case kPendingCodes: return {{positiveReply(kPendingCodes), 0, 0, 0, 0, 0, 0}};
    case kClearCodes: return {{positiveReply(kClearCodes)}};
    case kReadDataByIdentifier: return readNissanData(nissanGearboxItems(), r, ctx.state);
    case kTesterPresent: return {{positiveReply(kTesterPresent)}};
    default:
        return lacking(r, kServiceNotSupported);
    }
}

} // namespace kvx::sim
