#include "link/Framing.h"

#include "link/LinkError.h"

#include <algorithm>
#include <optional>

namespace kvx::link {

namespace {

constexpr std::size_t kIsoHeader = 3;
constexpr std::size_t kIsoMaxData = 7;
constexpr std::size_t kKwpMaxData = 255;
constexpr std::uint8_t kAddressBits = 0xC0;

[[noreturn]] void refuse(const std::string& why) { throw LinkError(LinkError::Kind::BadRequest, why); }

void appendChecksum(Bytes& frame) { frame.push_back(checksum(frame)); }

bool checksumHolds(const std::vector<TimedByte>& in, std::size_t from, std::size_t size)
{
    unsigned sum = 0;
    for (std::size_t i = from; i + 1 < from + size; ++i)
        sum += in[i].value;
    return static_cast<std::uint8_t>(sum) == in[from + size - 1].value;
}

Bytes slice(const std::vector<TimedByte>& in, std::size_t from, std::size_t to)
{
    Bytes out;
    for (std::size_t i = from; i < to && i < in.size(); ++i)
        out.push_back(in[i].value);
    return out;
}

struct KwpLayout {
    std::size_t header = 1;  // format byte and addresses
    std::size_t lengthAt = 0; // index of a separate length byte, 0 when none
    std::size_t data = 0;
    std::size_t size() const { return header + (lengthAt ? 1 : 0) + data + 1; }
};

// The layout of a KWP frame starting at from, or nullopt while its length byte has not come.
std::optional<KwpLayout> kwpLayout(const std::vector<TimedByte>& in, std::size_t from)
{
    KwpLayout l;
    const std::uint8_t format = in[from].value;
    l.header = (format & kAddressBits) ? 3 : 1;
    l.data = format & 0x3F;
    if (l.data == 0) {
        if (from + l.header >= in.size())
            return std::nullopt;
        l.lengthAt = l.header;
        l.data = in[from + l.header].value;
    }
    return l;
}

// Size of a whole, checksum-valid frame at from, 0 when none, nullopt while it may still arrive.
std::optional<std::size_t> kwpFrameAt(const std::vector<TimedByte>& in, std::size_t from)
{
    auto l = kwpLayout(in, from);
    if (!l)
        return std::nullopt;
    if (l->data == 0)
        return 0;
    if (from + l->size() > in.size())
        return std::nullopt;
    return checksumHolds(in, from, l->size()) ? l->size() : 0;
}

// ISO 9141 frames carry no length: a checksum that holds and is followed by the end, the next
// frame's header or a pause marks the end. Among several such ends the longest pause wins.
std::size_t isoFrameAt(const std::vector<TimedByte>& in, std::size_t from)
{
    // Every J1979 reply on ISO 9141-2 starts 48 6B.
    if (from + 1 >= in.size() || in[from].value != 0x48 || in[from + 1].value != 0x6B)
        return 0;
    std::size_t best = 0;
    Micros bestGap = -1;
    for (std::size_t size = kIsoHeader + 2; size <= kIsoHeader + kIsoMaxData + 1 && from + size <= in.size(); ++size) {
        if (!checksumHolds(in, from, size))
            continue;
        const std::size_t next = from + size;
        Micros score = ms(1500);
        if (next < in.size()) {
            const bool nextHeader = in[next].value == 0x48 && (next + 1 >= in.size() || in[next + 1].value == 0x6B);
            const Micros gap = in[next].time - in[next - 1].time;
            score = nextHeader ? gap + ms(1000) : gap;
        }
        if (score > bestGap) {
            bestGap = score;
            best = size;
        }
    }
    return best;
}

} // namespace

Bytes encodeRequest(LineKind kind, const Bytes& request, const HeaderForm& form)
{
    if (request.size() < 4)
        refuse("A request needs three header bytes and a service byte.");
    Bytes frame;
    if (kind == LineKind::Iso9141) {
        if (request.size() - kIsoHeader > kIsoMaxData)
            refuse("An ISO 9141 request carries at most 7 bytes after its header.");
        frame = request;
        appendChecksum(frame);
        return frame;
    }
    const Bytes data(request.begin() + kIsoHeader, request.end());
    if (data.size() > kKwpMaxData)
        refuse("A KWP2000 request carries at most 255 bytes after its header.");
    const std::uint8_t addressBits = request[0] & kAddressBits;
    const bool inFormat = form.lengthInFormat && data.size() <= 0x3F;
    if (!inFormat && !form.lengthByte && data.size() > 0x3F)
        refuse("The unit takes no length byte, so a request may carry at most 63 bytes.");
    frame = {static_cast<std::uint8_t>(addressBits | (inFormat ? data.size() : 0)), request[1], request[2]};
    if (!inFormat)
        frame.push_back(static_cast<std::uint8_t>(data.size()));
    frame.insert(frame.end(), data.begin(), data.end());
    appendChecksum(frame);
    return frame;
}

Bytes encodeBody(const HeaderForm& form, std::uint8_t target, std::uint8_t source, const Bytes& body)
{
    if (body.size() < 2 || body[0] != body.size() - 1)
        refuse("A request body must start with the number of bytes that follow it.");
    const std::size_t length = body[0];
    const bool inFormat = form.lengthInFormat && length <= 0x3F;
    if (!inFormat && !form.lengthByte)
        refuse("The unit takes no length byte, so a request may carry at most 63 bytes.");
    Bytes frame{static_cast<std::uint8_t>((form.addresses ? 0x80 : 0x00) | (inFormat ? length : 0))};
    if (form.addresses) {
        frame.push_back(target);
        frame.push_back(source);
    }
    if (!inFormat)
        frame.push_back(static_cast<std::uint8_t>(length));
    frame.insert(frame.end(), body.begin() + 1, body.end());
    appendChecksum(frame);
    return frame;
}

FrameCut cutFrames(LineKind kind, const std::vector<TimedByte>& in)
{
    FrameCut cut;
    std::size_t pos = 0;
    auto frameAt = [&](std::size_t from) -> std::optional<std::size_t> {
        return kind == LineKind::Kwp ? kwpFrameAt(in, from) : std::optional<std::size_t>(isoFrameAt(in, from));
    };
    while (pos < in.size()) {
        const auto size = frameAt(pos);
        if (size && *size > 0) {
            cut.frames.push_back(slice(in, pos, pos + *size));
            pos += *size;
            continue;
        }
        // Nothing valid starts here: skip to the next place where a whole valid frame starts.
        std::size_t next = pos + 1;
        while (next < in.size()) {
            const auto s = frameAt(next);
            if (s && *s > 0)
                break;
            ++next;
        }
        std::string reason = "stray bytes";
        if (kind == LineKind::Kwp) {
            auto l = kwpLayout(in, pos);
            if (!l || pos + l->size() > next) {
                if (next == in.size()) {
                    cut.incompleteTail = true;
                    reason = "incomplete frame";
                }
            } else if (pos + l->size() == next) {
                reason = "bad checksum";
            }
        } else if (next - pos >= kIsoHeader + 2 && next - pos <= kIsoHeader + kIsoMaxData + 1) {
            reason = "bad checksum";
        } else if (next == in.size()) {
            cut.incompleteTail = true;
            reason = "incomplete frame";
        }
        cut.dropped.push_back({slice(in, pos, next), in[next - 1].time, reason});
        pos = next;
    }
    return cut;
}

Bytes payloadOf(LineKind kind, const Bytes& frame)
{
    if (frame.size() < 2)
        return {};
    std::size_t from = kIsoHeader;
    if (kind == LineKind::Kwp) {
        from = (frame[0] & kAddressBits) ? 3 : 1;
        if ((frame[0] & 0x3F) == 0)
            ++from;
    }
    if (from >= frame.size() - 1)
        return {};
    return Bytes(frame.begin() + static_cast<long>(from), frame.end() - 1);
}

bool isResponsePending(LineKind kind, const Bytes& frame)
{
    const Bytes p = payloadOf(kind, frame);
    return p.size() >= 3 && p[0] == 0x7F && p[2] == 0x78;
}

Bytes bodyOf(LineKind kind, const Bytes& frame)
{
    const Bytes p = payloadOf(kind, frame);
    Bytes out{static_cast<std::uint8_t>(p.size())};
    out.insert(out.end(), p.begin(), p.end());
    appendChecksum(out);
    return out;
}

} // namespace kvx::link
