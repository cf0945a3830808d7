#include "link/decode/ServiceReply.h"

#include "link/ProtocolBytes.h"
#include "link/ReplyText.h"

namespace kvx::link::decode {

namespace {
using namespace kline;
constexpr std::uint8_t kCleared = positiveReply(kClearCodes);
} // namespace

std::string negativeResponseText(std::uint8_t code)
{
    switch (code) {
    case 0x10: return "general reject";
    case 0x11: return "service not supported";
    case 0x12: return "sub-function not supported or invalid format";
    case 0x21: return "busy, repeat the request";
    case 0x22: return "conditions not correct";
    case 0x23: return "routine not complete";
    case 0x31: return "request out of range";
    case 0x33: return "security access denied";
    case 0x35: return "invalid key";
    case 0x36: return "too many attempts";
    case 0x37: return "required time delay not expired";
    case 0x78: return "request received, response pending";
    case 0x80: return "service not supported in the active session";
    default: return "unknown reason";
    }
}

std::string formatServiceReply(std::string_view message)
{
    const auto m = readMessage(message);
    if (!m)
        return {};
    if (m->service == kNegativeReply) {
        if (m->data.size() < 2)
            return "Request refused (no reason given)";
        const auto& d = m->data;
        std::string text = "Service " + toHex(d[0]) + " refused: " + negativeResponseText(d[1]);
        // Units refuse to clear codes while the engine runs; saying so spares the user a guess.
        if (d[0] == kClearCodes && d[1] == kConditionsNotCorrect)
            text += ", stop the engine and leave the ignition on";
        return text + " (" + toHex(d[1]) + ")";
    }
    if (m->service == kCleared)
        return "Trouble codes cleared";
    if (m->service < kReplyBit)
        return "Not a reply (service " + toHex(m->service) + ")";
    return "Service " + toHex(static_cast<std::uint8_t>(m->service - kReplyBit)) + " accepted";
}

} // namespace kvx::link::decode
