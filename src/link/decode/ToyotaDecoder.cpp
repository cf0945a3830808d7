#include "link/decode/ToyotaDecoder.h"

#include "link/Hex.h"
#include "link/ProtocolBytes.h"
#include "link/ReplyText.h"
#include "link/decode/PidValue.h"
#include "link/decode/ToyotaItems.h"

namespace kvx::link {

namespace {

using namespace decode;

constexpr std::uint8_t kLiveReply = kline::positiveReply(kline::kCurrentData);

} // namespace

std::string ToyotaDecoder::SensorName(const std::string& parameter, int a, int b) const
{
    const auto p = parameter.size() == 2 ? hexByteAt(parameter, 0) : std::nullopt;
    const ToyotaItem* item = p ? findToyotaItem(*p, a, b) : nullptr;
    return item ? item->name : "";
}

std::string ToyotaDecoder::SensorValue(int a, int b, const std::string& reply, int kind) const
{
    if (kind != Metric && kind != Customary)
        return {};
    const auto m = readMessage(reply);
    if (!m || m->service != kLiveReply || m->data.empty())
        return {};
    const ToyotaItem* item = findToyotaItem(m->data[0], a, b);
    // data[0] is the parameter, so byte a of the value sits at data[a].
    if (!item || m->data.size() < static_cast<std::size_t>(a + item->bytes))
        return {};
    const std::uint8_t* d = m->data.data() + a;
    if (b > 0)
        return (d[0] >> (b - 1)) & 1 ? "ON" : "OFF";
    double raw = 0;
    for (int i = 0; i < item->bytes; ++i)
        raw = raw * 256 + d[i];
    return quantity(raw * item->scale + item->offset, item->decimals, item->unit, kind);
}

} // namespace kvx::link
