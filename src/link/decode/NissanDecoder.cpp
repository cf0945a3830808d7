#include "link/decode/NissanDecoder.h"

#include "link/Hex.h"
#include "link/ProtocolBytes.h"
#include "link/ReplyText.h"
#include "link/decode/NissanItems.h"
#include "link/decode/PidValue.h"

#include <optional>

namespace kvx::link {

namespace {

using namespace decode;

constexpr std::uint8_t kReadReply = kline::positiveReply(kline::kReadDataByIdentifier);

// "1101" as 0x1101; nullopt for anything but four hex digits.
std::optional<int> identifierOf(std::string_view text)
{
    const auto bytes = text.size() == 4 ? fromHex(text) : std::nullopt;
    if (!bytes)
        return std::nullopt;
    return (*bytes)[0] << 8 | (*bytes)[1];
}

double rawValue(const std::uint8_t* d, int bytes, bool isSigned)
{
    long v = 0;
    for (int i = 0; i < bytes; ++i)
        v = v << 8 | d[i];
    // Two's complement: the top bit of the first byte is the sign.
    if (isSigned && (d[0] & 0x80))
        v -= 1L << (8 * bytes);
    return static_cast<double>(v);
}

} // namespace

std::string NissanDecoder::SensorName(const std::string& identifier, int moduleIndex) const
{
    const auto id = identifierOf(std::string_view(identifier).substr(0, 4));
    if (!id)
        return {};
    if (identifier.size() == 4) {
        const NissanItem* item = findNissanItem(*id, moduleIndex);
        return item ? item->name : "";
    }
    // A switch: the register, a blank and the bit number.
    if (identifier.size() != 6 || identifier[4] != ' ' || identifier[5] < '0' || identifier[5] > '7')
        return {};
    const char* name = findNissanSwitch(*id, identifier[5] - '0', moduleIndex);
    return name ? name : "";
}

std::string NissanDecoder::SensorValue(const std::string& reply, int kind, int bit, int moduleIndex) const
{
    if (kind != Metric && kind != Customary)
        return {};
    // The message is "LL 62 II II data.." (any checksum after it is not read): LL counts the bytes
    // from 62 on.
    const auto bytes = fromHex(firstMessage(reply));
    if (!bytes || bytes->size() < 4 || (*bytes)[1] != kReadReply || bytes->size() < 1u + (*bytes)[0])
        return {};
    const Bytes& b = *bytes;
    const NissanItem* item = findNissanItem(b[2] << 8 | b[3], moduleIndex);
    if (!item || b[0] < 3 + item->bytes)
        return {};
    const std::uint8_t* data = b.data() + 4;
    if (item->form == NissanForm::Switches) {
        if (bit < 0 || bit > 7)
            return {};
        return (data[0] >> bit) & 1 ? "ON" : "OFF";
    }
    const double value = rawValue(data, item->bytes, item->form == NissanForm::Signed) * item->scale + item->offset;
    return quantity(value, item->decimals, item->unit, kind);
}

} // namespace kvx::link
