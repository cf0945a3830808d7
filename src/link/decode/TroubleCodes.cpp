#include "link/decode/TroubleCodes.h"

#include "link/ProtocolBytes.h"
#include "link/ReplyText.h"

#include <algorithm>

namespace kvx::link::decode {

namespace {
constexpr std::uint8_t kStoredCodes = kline::positiveReply(kline::kStoredCodes);
constexpr std::uint8_t kPendingCodes = kline::positiveReply(kline::kPendingCodes);
constexpr char kLetters[] = "PCBU";
constexpr char kDigits[] = "0123456789ABCDEF";
} // namespace

std::string troubleCode(std::uint8_t high, std::uint8_t low)
{
    return {kLetters[high >> 6], kDigits[(high >> 4) & 0x03], kDigits[high & 0x0F], kDigits[low >> 4],
            kDigits[low & 0x0F]};
}

std::string formatTroubleCodes(std::string_view reply, int count)
{
    std::string codes;
    const std::vector<std::string> messages = splitReply(reply);
    for (std::size_t n = 0; n < messages.size() && n < static_cast<std::size_t>(std::max(count, 0)); ++n) {
        const auto message = readMessage(messages[n]);
        if (!message || (message->service != kStoredCodes && message->service != kPendingCodes))
            continue;
        const auto& d = message->data;
        for (std::size_t i = 0; i + 1 < d.size(); i += 2) {
            if (d[i] == 0 && d[i + 1] == 0)
                continue;  // a frame is padded to a fixed size with zero pairs, not codes
            codes += troubleCode(d[i], d[i + 1]);
        }
    }
    return codes;
}

} // namespace kvx::link::decode
