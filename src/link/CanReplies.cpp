#include "link/CanReplies.h"

#include "link/ProtocolBytes.h"

#include <algorithm>
#include <map>

namespace kvx::link {

namespace {

using namespace kline;

constexpr std::uint32_t kFirstReplyId = 0x7E8;
constexpr std::uint32_t kLastReplyId = 0x7EF;
constexpr std::uint32_t kExtendedReplyBase = 0x18DAF100;
constexpr std::uint8_t kFirstUnit = 0x10;
constexpr std::uint8_t kUnitStep = 8;

constexpr std::uint8_t kSingleFrame = 0x0;
constexpr std::uint8_t kFirstFrame = 0x1;
constexpr std::uint8_t kConsecutiveFrame = 0x2;

constexpr std::uint8_t kStoredCodesReply = positiveReply(kStoredCodes);
constexpr std::uint8_t kPendingCodesReply = positiveReply(kPendingCodes);
constexpr std::uint8_t kPermanentCodesReply = 0x4A;
constexpr std::uint8_t kMonitorReply = positiveReply(kMonitorTests);
constexpr std::uint8_t kInfoReply = positiveReply(kVehicleInformation);

constexpr std::size_t kCodesPerMessage = 3;
constexpr std::size_t kInfoBytesPerMessage = 4;
constexpr std::size_t kMonitorRecord = 9; // OBDMID, TID, unit and scaling, value, minimum, maximum

std::optional<std::uint8_t> unitOf(std::uint32_t id)
{
    if (id >= kFirstReplyId && id <= kLastReplyId)
        return static_cast<std::uint8_t>(kFirstUnit + kUnitStep * (id - kFirstReplyId));
    if ((id & 0xFFFFFF00u) == kExtendedReplyBase)
        return static_cast<std::uint8_t>(id & 0xFF);
    return std::nullopt;
}

bool isRangeMarker(std::uint8_t id) { return id % 0x20 == 0; }

Bytes idBytes(std::uint32_t id)
{
    if (id <= 0xFFFF)
        return {static_cast<std::uint8_t>(id >> 8), static_cast<std::uint8_t>(id)};
    return {static_cast<std::uint8_t>(id >> 24), static_cast<std::uint8_t>(id >> 16), static_cast<std::uint8_t>(id >> 8),
            static_cast<std::uint8_t>(id)};
}

// The frame as it came: its identifier bytes, then its data.
Bytes asItCame(const CanLine& line)
{
    Bytes out = idBytes(line.id);
    out.insert(out.end(), line.data.begin(), line.data.end());
    return out;
}

// Codes without the count byte, three to a message, the last padded with zero pairs as K-line
// frames are; no codes is one message of zeros.
std::vector<Bytes> codeMessages(const Bytes& p)
{
    std::vector<Bytes> out;
    const std::size_t codes = (p.size() - 2) / 2;
    for (std::size_t first = 0; first < std::max<std::size_t>(codes, 1); first += kCodesPerMessage) {
        Bytes m{p[0]};
        for (std::size_t c = first; c < first + kCodesPerMessage; ++c) {
            m.push_back(c < codes ? p[2 + 2 * c] : 0);
            m.push_back(c < codes ? p[3 + 2 * c] : 0);
        }
        out.push_back(std::move(m));
    }
    return out;
}

// Items without the count byte, as numbered messages of four bytes; the filler goes in front, where
// the K-line form of the vehicle number has it.
std::vector<Bytes> infoMessages(const Bytes& p)
{
    Bytes items(p.begin() + 3, p.end());
    const std::size_t filler = (kInfoBytesPerMessage - items.size() % kInfoBytesPerMessage) % kInfoBytesPerMessage;
    items.insert(items.begin(), filler, 0);
    std::vector<Bytes> out;
    for (std::size_t at = 0; at < items.size(); at += kInfoBytesPerMessage) {
        Bytes m{p[0], p[1], static_cast<std::uint8_t>(at / kInfoBytesPerMessage + 1)};
        m.insert(m.end(), items.begin() + static_cast<long>(at), items.begin() + static_cast<long>(at + kInfoBytesPerMessage));
        out.push_back(std::move(m));
    }
    return out;
}

std::vector<Bytes> monitorMessages(const Bytes& p)
{
    std::vector<Bytes> out;
    for (std::size_t at = 1; at + kMonitorRecord <= p.size(); at += kMonitorRecord) {
        Bytes m{p[0]};
        m.insert(m.end(), p.begin() + static_cast<long>(at), p.begin() + static_cast<long>(at + kMonitorRecord));
        out.push_back(std::move(m));
    }
    return out;
}

// The payloads in the K-line form, or the reason the CAN form is kept.
std::vector<Bytes> kLineForm(const Bytes& p, std::string& why)
{
    if (p.size() < 2)
        return {p};
    const std::uint8_t service = p[0];
    if (service == kStoredCodesReply || service == kPendingCodesReply || service == kPermanentCodesReply) {
        if (p.size() % 2 != 0 || (p.size() - 2) / 2 != p[1]) {
            why = "its code count does not match its codes";
            return {p};
        }
        return codeMessages(p);
    }
    if (service == kInfoReply && !isRangeMarker(p[1])) {
        if (p.size() < 3 + 1) {
            why = "it holds no item";
            return {p};
        }
        return infoMessages(p);
    }
    if (service == kMonitorReply && !isRangeMarker(p[1])) {
        if ((p.size() - 1) % kMonitorRecord != 0) {
            why = "its monitor results are not whole records of nine bytes";
            return {p};
        }
        return monitorMessages(p);
    }
    return {p};
}

Bytes message(std::uint8_t unit, const Bytes& payload)
{
    Bytes m{kIsoReply, kIsoReplyTarget, unit};
    m.insert(m.end(), payload.begin(), payload.end());
    m.push_back(checksum(m));
    return m;
}

// One unit's ISO-TP transfer under way.
struct Transfer {
    std::vector<const CanLine*> lines;
    Bytes payload;
    std::size_t length = 0;
    std::uint8_t nextSequence = 1;
};

} // namespace

std::optional<CanLine> readCanLine(std::string_view hexLine, bool extended)
{
    const std::size_t idDigits = extended ? 8 : 3;
    if (hexLine.size() <= idDigits || (hexLine.size() - idDigits) % 2 != 0)
        return std::nullopt;
    CanLine line;
    for (std::size_t i = 0; i < idDigits; ++i) {
        const char c = hexLine[i];
        const int v = c >= '0' && c <= '9' ? c - '0' : c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
        if (v < 0)
            return std::nullopt;
        line.id = line.id * 16 + static_cast<std::uint32_t>(v);
    }
    auto data = fromHex(hexLine.substr(idDigits));
    if (!data)
        return std::nullopt;
    line.data = std::move(*data);
    return line;
}

CanMessages normaliseCanAnswer(const std::vector<CanLine>& lines)
{
    CanMessages out;
    std::map<std::uint32_t, Transfer> open;
    const auto passOn = [&](const CanLine& line, const std::string& why) {
        out.messages.push_back(asItCame(line));
        out.notes.push_back(toHex(asItCame(line)) + " passed on as it came: " + why);
    };
    const auto deliver = [&](std::uint8_t unit, const Bytes& payload, const std::vector<const CanLine*>& from) {
        if (payload.size() >= 3 && payload[0] == kNegativeReply && payload[2] == kResponsePending) {
            out.notes.push_back("unit " + toHex(unit) + " asked for more time (7F .. 78); the adapter waits for its answer");
            return;
        }
        std::string why;
        const std::vector<Bytes> payloads = kLineForm(payload, why);
        if (!why.empty()) {
            for (const CanLine* l : from)
                passOn(*l, why);
            return;
        }
        for (const Bytes& p : payloads)
            out.messages.push_back(message(unit, p));
    };

    for (const CanLine& line : lines) {
        const auto unit = unitOf(line.id);
        if (!unit) {
            passOn(line, "its identifier names no engine or transmission unit's answer");
            continue;
        }
        if (line.data.empty()) {
            passOn(line, "it carries no data");
            continue;
        }
        const std::uint8_t pci = line.data[0];
        const std::uint8_t type = pci >> 4;
        if (type == kSingleFrame) {
            const std::size_t length = pci & 0x0F;
            if (length == 0 || length > line.data.size() - 1) {
                passOn(line, "its length byte promises more than it holds");
                continue;
            }
            deliver(*unit, Bytes(line.data.begin() + 1, line.data.begin() + 1 + static_cast<long>(length)), {&line});
        } else if (type == kFirstFrame && line.data.size() >= 2) {
            if (auto unfinished = open.find(line.id); unfinished != open.end()) {
                for (const CanLine* l : unfinished->second.lines)
                    passOn(*l, "a new answer began before this one was whole");
                open.erase(unfinished);
            }
            Transfer t;
            t.lines.push_back(&line);
            t.length = static_cast<std::size_t>((pci & 0x0F) << 8 | line.data[1]);
            t.payload.assign(line.data.begin() + 2, line.data.end());
            open[line.id] = std::move(t);
        } else if (type == kConsecutiveFrame) {
            auto it = open.find(line.id);
            if (it == open.end() || (pci & 0x0F) != it->second.nextSequence) {
                passOn(line, it == open.end() ? "a continuation without its first frame"
                                              : "a continuation out of sequence");
                continue;
            }
            Transfer& t = it->second;
            t.lines.push_back(&line);
            t.nextSequence = static_cast<std::uint8_t>((t.nextSequence + 1) & 0x0F);
            t.payload.insert(t.payload.end(), line.data.begin() + 1, line.data.end());
            if (t.payload.size() >= t.length) {
                t.payload.resize(t.length);
                deliver(*unit, t.payload, t.lines);
                open.erase(it);
            }
        } else {
            passOn(line, "its ISO-TP frame type is not one of an answer");
        }
    }
    for (const auto& [id, t] : open)
        for (const CanLine* l : t.lines)
            passOn(*l, "the answer ended before all of its " + std::to_string(t.length) + " bytes came");
    return out;
}

} // namespace kvx::link
