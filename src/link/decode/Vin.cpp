#include "link/decode/Vin.h"

#include "link/ProtocolBytes.h"
#include "link/ReplyText.h"

#include <map>

namespace kvx::link::decode {

namespace {
constexpr std::uint8_t kInfoReply = kline::positiveReply(kline::kVehicleInformation);
constexpr std::uint8_t kVinInfoType = 0x02;
constexpr std::size_t kBytesPerMessage = 4;
} // namespace

std::string formatVin(std::string_view reply)
{
    std::map<int, Bytes> parts;
    bool first = true;
    std::optional<std::uint8_t> source;
    for (const std::string& message : splitReply(reply)) {
        const auto m = readMessage(message);
        if (!m || m->service != kInfoReply || m->data.size() < 2 + kBytesPerMessage || m->data[0] != kVinInfoType)
            continue;
        // Two units may both answer; the first one's messages make the number.
        if (first)
            source = m->source;
        first = false;
        if (m->source != source)
            continue;
        parts.emplace(m->data[1], Bytes(m->data.begin() + 2, m->data.begin() + 2 + kBytesPerMessage));
    }
    std::string vin;
    int expected = 1;
    for (const auto& [number, bytes] : parts) {
        if (number != expected++)
            return {};
        for (auto b : bytes) {
            if (b == 0 && vin.empty())
                continue;  // the filler before the first character
            vin += (b >= 0x20 && b < 0x7F) ? static_cast<char>(b) : '?';
        }
    }
    return vin;
}

} // namespace kvx::link::decode
