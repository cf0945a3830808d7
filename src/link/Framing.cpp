#include "link/Framing.h"

#include "link/KLineTiming.h"
#include "link/LinkError.h"

#include <algorithm>
#include <optional>

namespace kvx::link {

namespace {

using namespace kline;

// Whole ISO 9141 frames: the header, a service, up to seven data bytes and the checksum.
constexpr std::size_t kIsoShortest = kIsoHeaderSize + 2;
constexpr std::size_t kIsoLongest = kIsoHeaderSize + kIsoMaxData + 1;

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
    std::size_t serviceAt() const { return header + (lengthAt ? 1 : 0); }
};

// The layout of a KWP frame starting at from, or nullopt while its length byte has not come.
std::optional<KwpLayout> kwpLayout(const std::vector<TimedByte>& in, std::size_t from)
{
    KwpLayout l;
    const std::uint8_t format = in[from].value;
    l.header = kwpHeaderSize(format);
    l.data = format & kLengthMask;
    if (l.data == 0) {
        if (from + l.header >= in.size())
            return std::nullopt;
        l.lengthAt = l.header;
        l.data = in[from + l.header].value;
    }
    return l;
}

bool isUnit(std::uint8_t address) { return address < kFirstTester; }
// Every reply's service has the reply bit set, refusals (7F) included.
bool isReplyService(std::uint8_t service) { return (service & kReplyBit) != 0; }

// Whether the KWP frame laid out at from, once whole, could be a reply to us: for this tester,
// from a unit, or in the one-byte header form where the session uses it; nothing of the checksum.
bool kwpHeaderFits(const std::vector<TimedByte>& in, std::size_t from, const KwpLayout& l,
                   const ReplyAddressing& to)
{
    if (l.data == 0 || from + l.size() > in.size())
        return false;
    const bool addressed = l.header == kKwpAddressedHeader;
    if (addressed ? in[from + 1].value != to.tester || !isUnit(in[from + 2].value) : !to.shortHeaders)
        return false;
    return isReplyService(in[from + l.serviceAt()].value);
}

// ISO 9141-2 replies start 48 6B and the unit's address; only the checksum marks where they end.
bool isoHeaderFits(const std::vector<TimedByte>& in, std::size_t from)
{
    return from + kIsoHeaderSize < in.size() && in[from].value == kIsoReply && in[from + 1].value == kIsoReplyTarget &&
           isUnit(in[from + 2].value) && isReplyService(in[from + kIsoHeaderSize].value);
}

// Sizes of the whole valid frames that may start at from, the likeliest first. An ISO 9141 frame
// ends where its checksum holds and the end shows: nothing follows, the next header does, or a
// pause longer than a unit leaves between its bytes. A checksum also holds by chance, one time in
// 256, inside a frame damaged further on; such a piece is no frame. Among several ends, the one
// followed by the next header or the longest pause comes first.
std::vector<std::size_t> framesAt(LineKind kind, const std::vector<TimedByte>& in, std::size_t from,
                                  const ReplyAddressing& to)
{
    if (kind == LineKind::Kwp) {
        const auto l = kwpLayout(in, from);
        if (!l || !kwpHeaderFits(in, from, *l, to) || !checksumHolds(in, from, l->size()))
            return {};
        return {l->size()};
    }
    if (!isoHeaderFits(in, from))
        return {};
    std::vector<std::pair<Micros, std::size_t>> ends;
    for (std::size_t size = kIsoShortest; size <= kIsoLongest && from + size <= in.size(); ++size) {
        if (!checksumHolds(in, from, size))
            continue;
        const std::size_t next = from + size;
        if (next == in.size()) {
            ends.push_back({ms(1500), size});
            continue;
        }
        const bool nextHeader =
            in[next].value == kIsoReply && (next + 1 >= in.size() || in[next + 1].value == kIsoReplyTarget);
        const Micros gap = in[next].time - in[next - 1].time;
        if (nextHeader || gap > kP1Max)
            ends.push_back({nextHeader ? gap + ms(1000) : gap, size});
    }
    std::stable_sort(ends.begin(), ends.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<std::size_t> sizes;
    for (const auto& e : ends)
        sizes.push_back(e.second);
    return sizes;
}

// Why the bytes [from, to) make no frame, for the trace.
std::string dropReason(LineKind kind, const std::vector<TimedByte>& in, std::size_t from, std::size_t to,
                       const ReplyAddressing& addressing, bool& incomplete)
{
    if (kind == LineKind::Kwp) {
        const auto l = kwpLayout(in, from);
        if (to == in.size() && (!l || from + l->size() > to)) {
            incomplete = true;
            return "incomplete frame";
        }
        if (l && from + l->size() == to && kwpHeaderFits(in, from, *l, addressing))
            return "bad checksum";
        return "stray bytes";
    }
    const std::size_t size = to - from;
    if (isoHeaderFits(in, from) && size >= kIsoShortest && size <= kIsoLongest)
        return "bad checksum";
    if (to == in.size() && isoHeaderFits(in, from)) {
        incomplete = true;
        return "incomplete frame";
    }
    return "stray bytes";
}

} // namespace

Bytes encodeRequest(LineKind kind, const Bytes& request, const HeaderForm& form)
{
    if (request.size() < 4)
        refuse("A request needs three header bytes and a service byte.");
    Bytes frame;
    if (kind == LineKind::Iso9141) {
        if (request.size() - kIsoHeaderSize > kIsoMaxData)
            refuse("An ISO 9141 request carries at most 7 bytes after its header.");
        frame = request;
        appendChecksum(frame);
        return frame;
    }
    const Bytes data(request.begin() + kIsoHeaderSize, request.end());
    if (data.size() > kKwpMaxData)
        refuse("A KWP2000 request carries at most 255 bytes after its header.");
    const std::uint8_t addressBits = request[0] & kAddressMode;
    const bool inFormat = form.lengthInFormat && data.size() <= kMaxLengthInFormat;
    if (!inFormat && !form.lengthByte && data.size() > kMaxLengthInFormat)
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
    const bool inFormat = form.lengthInFormat && length <= kMaxLengthInFormat;
    if (!inFormat && !form.lengthByte)
        refuse("The unit takes no length byte, so a request may carry at most 63 bytes.");
    Bytes frame{static_cast<std::uint8_t>((form.addresses ? kPhysical : 0) | (inFormat ? length : 0))};
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

FrameCut cutFrames(LineKind kind, const std::vector<TimedByte>& in, const ReplyAddressing& addressing)
{
    // Line noise can look like the start of a frame that swallows the real one behind it, so the
    // cut is the one whose frames cover the most bytes; among equals, frames that start earlier.
    const std::size_t n = in.size();
    std::vector<std::size_t> covered(n + 1, 0);
    std::vector<std::size_t> take(n, 0);
    for (std::size_t i = n; i-- > 0;) {
        covered[i] = covered[i + 1];
        for (std::size_t size : framesAt(kind, in, i, addressing)) {
            const std::size_t c = size + covered[i + size];
            if (c > covered[i] || (take[i] == 0 && c == covered[i])) {
                covered[i] = c;
                take[i] = size;
            }
        }
    }
    FrameCut cut;
    for (std::size_t pos = 0; pos < n;) {
        if (take[pos] > 0) {
            cut.frames.push_back(slice(in, pos, pos + take[pos]));
            pos += take[pos];
            continue;
        }
        std::size_t next = pos + 1;
        while (next < n && take[next] == 0)
            ++next;
        const std::string reason = dropReason(kind, in, pos, next, addressing, cut.incompleteTail);
        cut.dropped.push_back({slice(in, pos, next), in[next - 1].time, reason});
        pos = next;
    }
    return cut;
}

Bytes payloadOf(LineKind kind, const Bytes& frame)
{
    if (frame.size() < 2)
        return {};
    const std::size_t from = kind == LineKind::Kwp ? kwpServiceAt(frame[0]) : kIsoHeaderSize;
    if (from >= frame.size() - 1)
        return {};
    return Bytes(frame.begin() + static_cast<long>(from), frame.end() - 1);
}

bool isResponsePending(LineKind kind, const Bytes& frame)
{
    const Bytes p = payloadOf(kind, frame);
    return p.size() >= 3 && p[0] == kNegativeReply && p[2] == kResponsePending;
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
