#include "sim/CanForm.h"
#include "sim/Elm327Adapter.h"
#include "sim/KLineFrames.h"

#include <algorithm>
#include <cctype>

namespace kvx::sim {

using link::Bytes;
using link::Micros;
using namespace link::kline;

namespace {

// The adapter's search order: CAN first, as every car since about 2008 speaks it, then the K-line.
constexpr char kSearchOrder[] = {'6', '7', '8', '9', '3', '4', '5'};
constexpr Micros kKLineByte = 10 * 1'000'000 / 10400;
constexpr std::uint32_t kFunctionalId = 0x7DF;
constexpr std::uint32_t kFirstRequestId = 0x7E0;
constexpr std::uint32_t kFirstReplyId = 0x7E8;
constexpr std::uint8_t kFirstUnit = 0x10;
constexpr std::uint8_t kUnitStep = 8;
constexpr std::uint8_t kExtendedFunctional = 0xDB;
constexpr std::uint8_t kExtendedPhysical = 0xDA;
constexpr std::uint8_t kExtendedPriority = 0x18;

bool busy(const Bytes& payload)
{
    return payload.size() == 3 && payload[0] == kNegativeReply && payload[2] == kResponsePending;
}

bool isKLine(char p) { return p >= '3' && p <= '5'; }
bool extended(char p) { return p == '7' || p == '9'; }

std::optional<Bytes> hexBytes(const std::string& text)
{
    if (text.size() % 2 != 0)
        return std::nullopt;
    return link::fromHex(text);
}

std::string hexOf(std::uint32_t value, int digits)
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string out(static_cast<std::size_t>(digits), '0');
    for (int i = digits - 1; i >= 0; --i, value >>= 4)
        out[static_cast<std::size_t>(i)] = kDigits[value & 0xF];
    return out;
}

} // namespace

bool Elm327Adapter::answers(char p) const
{
    switch (p) {
    case '3': return config_.slowInit == link::LineKind::Iso9141 && initAddress_ == kObdAddress;
    case '4': return config_.slowInit == link::LineKind::Kwp && initAddress_ == kObdAddress;
    case '5': return config_.fastInit;
    case '6': return config_.bus == Bus::Can11At500;
    case '7': return config_.bus == Bus::Can29At500;
    case '8': return config_.bus == Bus::Can11At250;
    case '9': return config_.bus == Bus::Can29At250;
    default: return false;
    }
}

// The K-line wake-up the adapter times itself; a fast init goes to the unit the header names.
Micros Elm327Adapter::busInit(char p, Micros at, bool& ok)
{
    ok = answers(p);
    if (p == '5' && ok) {
        const auto header = hexBytes(header_);
        const std::uint8_t target = header && header->size() == 3 ? (*header)[1] : kObdAddress;
        ok = target == kObdAddress ||
             std::any_of(units_.begin(), units_.end(), [&](const auto& u) { return u->address() == target; });
    }
    if (ok)
        lastBus_ = at + (p == '5' ? timing_.fastInit : timing_.slowInit);
    return at + (p == '5' ? timing_.fastInit : timing_.slowInit);
}

std::optional<Micros> Elm327Adapter::connect(char p, Micros at, std::vector<Line>& lines)
{
    if (isKLine(p)) {
        bool ok = false;
        const Micros done = busInit(p, at, ok);
        if (!automatic_)
            lines.push_back({done, ok ? "BUS INIT: ...OK" : "BUS INIT: ...ERROR"});
        if (!ok)
            return std::nullopt;
        found_ = p;
        return done;
    }
    if (!answers(p))
        return std::nullopt;
    found_ = p;
    return at;
}

Elm327Adapter::Answer Elm327Adapter::request(const std::string& text, Micros at)
{
    // An odd digit at the end is how many answers to wait for before the prompt.
    std::optional<int> wanted;
    std::string hex = text;
    if (hex.size() % 2 == 1 && hex.size() >= 3 && std::isxdigit(static_cast<unsigned char>(hex.back())) && hex.back() != '0') {
        wanted = std::stoi(hex.substr(hex.size() - 1), nullptr, 16);
        hex.pop_back();
    }
    const auto data = hexBytes(hex);
    if (!data || data->empty())
        return {{{at + timing_.command, "?"}}, at + timing_.command};

    // Without its keep-alive the adapter's K-line session ends after the units' P3max of silence.
    if (found_ && isKLine(found_) && wakeUpUnits_ == 0 && at - lastBus_ > config_.timing.p3Max)
        found_ = 0;

    std::vector<Line> lines;
    Micros t = at;
    if (!found_) {
        if (automatic_)
            lines.push_back({at, "SEARCHING..."});
        const std::vector<char> order = automatic_ ? std::vector<char>(std::begin(kSearchOrder), std::end(kSearchOrder))
                                                   : std::vector<char>{protocol_};
        std::optional<Micros> ready;
        for (char p : order) {
            ready = connect(p, t, lines);
            if (ready)
                break;
            t += isKLine(p) ? (p == '5' ? timing_.fastInit : timing_.slowInit) : timing_.canProbe;
        }
        if (!ready) {
            if (automatic_ || !isKLine(protocol_))
                lines.push_back({t, "UNABLE TO CONNECT"});
            return {lines, t};
        }
        t = *ready;
    }
    Answer answer = askUnits(*data, t, wanted);
    lines.insert(lines.end(), answer.lines.begin(), answer.lines.end());
    return {lines, answer.done};
}

Elm327Adapter::Answer Elm327Adapter::askUnits(const Bytes& data, Micros at, std::optional<int> wanted)
{
    const Micros timeout = link::ms(4) * timeoutUnits_;
    const EcuTiming& tm = config_.timing;
    Request r;
    r.payload = data;
    std::vector<std::size_t> ends;
    std::vector<Line> lines;
    if (isKLine(found_)) {
        r.protocol = found_ == '3' ? link::LineKind::Iso9141 : link::LineKind::Kwp;
        const auto header = hexBytes(header_);
        const Bytes h = header && header->size() == 3 ? *header
                        : found_ == '3'                ? Bytes{kIsoRequest, kIsoRequestTarget, kTester}
                                                       : Bytes{kFunctional, kObdAddress, kTester};
        r.target = h[1];
        r.source = h[2];
        r.functional = r.target == kObdAddress || r.target == kIsoRequestTarget;
        const auto frameBytes = static_cast<Micros>(h.size() + data.size() + 1);
        r.time = at + frameBytes * kKLineByte + (frameBytes - 1) * timing_.testerGap;
        lines = kLineAnswer(r, r.time, ends);
    } else {
        const bool ext = extended(found_);
        const std::uint32_t id = header_.empty() ? (ext ? 0x18DB33F1u : kFunctionalId)
                                                 : static_cast<std::uint32_t>(std::stoul(header_, nullptr, 16));
        if (ext) {
            const std::uint32_t full = header_.size() == 6 ? (kExtendedPriority << 24 | id) : id;
            r.functional = (full >> 16 & 0xFF) == kExtendedFunctional;
            r.target = static_cast<std::uint8_t>(full >> 8);
            r.source = static_cast<std::uint8_t>(full);
            if (!r.functional && (full >> 16 & 0xFF) != kExtendedPhysical)
                r.target = 0;
        } else {
            const std::uint32_t eleven = id & 0x7FF;
            r.functional = eleven == kFunctionalId;
            r.target = eleven >= kFirstRequestId && eleven < kFirstRequestId + 8
                           ? static_cast<std::uint8_t>(kFirstUnit + kUnitStep * (eleven - kFirstRequestId))
                           : 0;
        }
        if (r.functional)
            r.target = kObdAddress;
        r.can = true;
        r.time = at + (found_ <= '7' ? timing_.canFrame : 2 * timing_.canFrame);
        lines = canAnswer(r, ext, r.time, ends);
    }
    if (lines.empty()) {
        lastBus_ = r.time;
        return {{{r.time + timeout, "NO DATA"}}, r.time + timeout};
    }
    // Asked for so many answers, the adapter stops listening once they came.
    if (wanted && ends.size() >= static_cast<std::size_t>(*wanted))
        lines.resize(ends[static_cast<std::size_t>(*wanted) - 1]);
    const Micros last = lines.back().at;
    lastBus_ = last;
    if (wanted && ends.size() >= static_cast<std::size_t>(*wanted))
        return {lines, last};
    const Micros quiet = adaptive_ == 0 ? timeout : std::min(timeout, tm.p2 + (adaptive_ == 2 ? tm.p2 / 4 : tm.p2));
    return {lines, last + quiet};
}

std::vector<Elm327Adapter::Line> Elm327Adapter::kLineAnswer(const Request& r, Micros at, std::vector<std::size_t>& ends)
{
    const EcuTiming& tm = config_.timing;
    std::vector<Line> lines;
    Micros cursor = at;
    for (const auto& unit : units_) {
        if (!r.functional && r.target != unit->address())
            continue;
        for (const Bytes& payload : unit->answer(r)) {
            const Bytes frame = replyFrame(r.protocol, unit->address(), r.source, payload);
            const auto n = static_cast<Micros>(frame.size());
            const Micros end = cursor + tm.p2 + n * kKLineByte + (n - 1) * tm.p1;
            const std::size_t head = link::kline::kIsoHeaderSize;
            lines.push_back({end, shown(headers_ ? frame : Bytes(frame.begin() + head, frame.end() - 1))});
            // A unit that said it is busy takes its time before the real answer.
            cursor = end + (busy(payload) ? tm.pending - tm.p2 : 0);
            ends.push_back(lines.size());
        }
    }
    return lines;
}

std::vector<Elm327Adapter::Line> Elm327Adapter::canAnswer(const Request& r, bool ext, Micros at, std::vector<std::size_t>& ends)
{
    const EcuTiming& tm = config_.timing;
    const Micros frameTime = found_ <= '7' ? timing_.canFrame : 2 * timing_.canFrame;
    std::vector<Line> lines;
    // J1979 on CAN has no oxygen-sensor service: those results are monitor results there.
    if (r.payload.front() == kOxygenTests)
        return lines;
    Micros cursor = at + tm.p2;
    for (const auto& unit : units_) {
        if (!r.functional && r.target != unit->address())
            continue;
        std::vector<Bytes> payloads = unit->answer(r);
        const std::string id = ext ? hexOf(0x18DA0000u | static_cast<std::uint32_t>(r.source) << 8 | unit->address(), 8)
                                   : hexOf(kFirstReplyId + static_cast<std::uint32_t>((unit->address() - kFirstUnit) / kUnitStep), 3);
        std::vector<Bytes> messages;
        auto rest = std::find_if(payloads.begin(), payloads.end(), [](const Bytes& p) { return !busy(p); });
        messages.assign(payloads.begin(), rest);
        const std::size_t pendingCount = messages.size();
        for (const Bytes& m : canForm(std::vector<Bytes>(rest, payloads.end())))
            messages.push_back(m);
        for (std::size_t k = 0; k < messages.size(); ++k) {
            const auto frames = isoTpFrames(messages[k]);
            for (std::size_t f = 0; f < frames.size(); ++f) {
                cursor += frameTime;
                std::string text;
                if (headers_) {
                    const std::string shownId = ext && spaces_ ? id.substr(0, 2) + " " + id.substr(2, 2) + " " + id.substr(4, 2) + " " + id.substr(6, 2) : id;
                    text = shownId + (spaces_ ? " " : "") + shown(frames[f]);
                } else if (frames.size() == 1) {
                    text = shown(Bytes(frames[f].begin() + 1, frames[f].begin() + 1 + static_cast<long>(messages[k].size())));
                } else {
                    // Without headers the adapter numbers the frames after a line with the length.
                    if (f == 0)
                        lines.push_back({cursor, hexOf(static_cast<std::uint32_t>(messages[k].size()), 3)});
                    const std::size_t from = f == 0 ? 2 : 1;
                    const std::size_t before = f == 0 ? 0 : 6 + 7 * (f - 1);
                    const std::size_t take = std::min(frames[f].size() - from, messages[k].size() - before);
                    text = hexOf(static_cast<std::uint32_t>(f % 16), 1) + ":" + (spaces_ ? " " : "") +
                           shown(Bytes(frames[f].begin() + static_cast<long>(from), frames[f].begin() + static_cast<long>(from + take)));
                }
                lines.push_back({cursor, text});
            }
            if (k < pendingCount)
                cursor += tm.pending;
            ends.push_back(lines.size());
        }
    }
    return lines;
}

std::string Elm327Adapter::shown(const Bytes& bytes) const
{
    std::string out;
    for (std::uint8_t b : bytes)
        out += (spaces_ && !out.empty() ? " " : "") + hexOf(b, 2);
    return out;
}

} // namespace kvx::sim
