#include "link/WakeUp.h"

#include "link/KLineTiming.h"
#include "link/ProtocolBytes.h"
#include "link/ReplyCollector.h"

#include <array>

namespace kvx::link {

namespace {

using namespace kline;

void timing(TraceSink* trace, Micros at, const std::string& name, Micros measured, Micros min, Micros max)
{
    if (trace)
        trace->timing(at, {name, measured, min, max});
}

void note(TraceSink* trace, Clock& clock, const std::string& text)
{
    if (trace)
        trace->note(clock.now(), text);
}

// Sleeps to just before t so that the break call, which takes time of its own, changes the line at t.
Micros edgeAt(ByteLink& io, Clock& clock, Micros t, bool low)
{
    clock.sleepUntil(t - io.breakCallTime() / 2);
    return io.setLineLow(low);
}

// Waits for one handshake byte, tracing its delay against its window.
std::optional<TimedByte> handshakeByte(ByteLink& io, TraceSink* trace, const std::string& name, Micros from,
                                       Micros min, Micros max)
{
    auto b = io.receive(from + max + kUsbSlack);
    if (b)
        timing(trace, b->time, name, b->time - from, min, max);
    return b;
}

} // namespace

WakeUpResult fiveBaudInit(ByteLink& io, Clock& clock, TraceSink* trace, std::uint8_t address, Protocol protocol,
                          const WakeUpTiming& wt, const std::function<void()>& idle)
{
    WakeUpResult r;
    io.discardInput("stray bytes before the wake-up");

    // Start bit low, eight data bits LSB first, stop bit high; runs of equal bits are one level,
    // so consecutive zero bits are one break and no edge is made between them.
    std::array<bool, 10> low{};
    low[0] = true;
    for (int i = 0; i < 8; ++i)
        low[1 + i] = !((address >> i) & 1);
    const Micros start = edgeAt(io, clock, clock.now(), true);
    Micros runStart = start;
    int runFirstBit = 0;
    // No idle hook inside the address: a window's event processing could push an edge past ±2 ms.
    for (int bit = 1; bit <= 10; ++bit) {
        if (bit < 10 && low[bit] == low[bit - 1])
            continue;
        const Micros target = start + bit * kFiveBaudBit;
        const Micros edge = bit < 10 ? edgeAt(io, clock, target, low[bit]) : (clock.sleepUntil(target), target);
        const int bits = bit - runFirstBit;
        timing(trace, edge,
               "5-baud bit" + std::string(bits > 1 ? "s " : " ") + std::to_string(runFirstBit) +
                   (bits > 1 ? "-" + std::to_string(bit - 1) : "") + (low[runFirstBit] ? " low" : " high"),
               edge - runStart, bits * kFiveBaudBit - kFiveBaudTolerance, bits * kFiveBaudBit + kFiveBaudTolerance);
        if (bit < 10 && !low[bit])
            io.discardInput("what the interface heard while the line was held low");
        runStart = edge;
        runFirstBit = bit;
    }
    const Micros addressEnd = start + kFiveBaudByte;

    // W1 may last 300 ms, long enough to let a window breathe while waiting for the sync byte.
    const std::optional<TimedByte> sync = io.receiveIdling(addressEnd + kW1Max + kUsbSlack, idle);
    if (!sync) {
        note(trace, clock, "no sync byte within W1: no unit answered address " + toHex(address));
        return r;
    }
    timing(trace, sync->time, "W1 (address to sync)", sync->time - addressEnd, kW1Min, kW1Max);
    if (sync->value != kSync) {
        note(trace, clock, "sync byte " + toHex(sync->value) + " is not 55: is the baud rate right?");
        return r;
    }
    const auto kb1 = handshakeByte(io, trace, "W2 (sync to KB1)", sync->time, kW2Min, kW2Max);
    const auto kb2 = kb1 ? handshakeByte(io, trace, "W3 (KB1 to KB2)", kb1->time, kW3Min, kW3Max) : std::nullopt;
    if (!kb2) {
        note(trace, clock, "the key bytes did not come");
        return r;
    }
    r.kb1 = kb1->value;
    r.kb2 = kb2->value;
    r.meaning = interpretKeyBytes(protocol, r.kb1, r.kb2);
    if (!r.meaning.accepted) {
        note(trace, clock, r.meaning.why);
        return r;
    }
    clock.sleepUntil(kb2->time + wt.w4);
    const Micros answerAt = clock.now();
    io.send(static_cast<std::uint8_t>(~r.kb2));
    timing(trace, answerAt, "W4 (KB2 to inverted KB2)", answerAt - kb2->time, kW4Min, kW4Max);
    const auto inverted = handshakeByte(io, trace, "W4 (inverted KB2 to inverted address)", io.lastActivity(), kW4Min, kW4Max);
    if (!inverted || inverted->value != static_cast<std::uint8_t>(~address)) {
        note(trace, clock,
             inverted ? "the unit answered " + toHex(inverted->value) + ", not the inverted address " +
                            toHex(static_cast<std::uint8_t>(~address))
                      : "no inverted address from the unit");
        return r;
    }
    r.ok = true;
    r.text = toHex(r.kb1) + toHex(r.kb2);
    return r;
}

WakeUpResult fastInit(ByteLink& io, Clock& clock, TraceSink* trace, const Bytes& startFrame, const WakeUpTiming& wt)
{
    WakeUpResult r;
    io.discardInput("stray bytes before the wake-up");
    const Micros low = io.setLineLow(true);
    const Micros high = edgeAt(io, clock, low + kTiniL, false);
    timing(trace, high, "TiniL (fast-init low)", high - low, kTiniL - kFastInitTolerance, kTiniL + kFastInitTolerance);
    io.discardInput("what the interface heard while the line was held low");
    clock.sleepUntil(low + kTiniL + wt.highAfterLow);
    const Micros first = clock.now();
    timing(trace, first, "TWuP (low edge to StartCommunication)", first - low, kTWuP - kFastInitTolerance,
           kTWuP + kFastInitTolerance);
    io.sendFrame(startFrame, wt.p4);

    // A unit woken by its own address may answer in the one-byte header form.
    const ReplyAddressing addressing{startFrame[2], (startFrame[0] & kAddressMode) == kPhysical};
    const CollectedReplies replies = collectReplies(io, LineKind::Kwp, addressing, {}, trace);
    for (const auto& f : replies.frames) {
        const Bytes p = payloadOf(LineKind::Kwp, f);
        if (p.size() < 3 || p[0] != positiveReply(kStartCommunication))
            continue;
        if (!r.ok) {
            r.kb1 = p[1];
            r.kb2 = p[2];
            r.meaning = interpretKeyBytes(Kwp2000Fast, r.kb1, r.kb2);
            r.ok = r.meaning.accepted;
        }
        r.text += (r.text.empty() ? "" : ":") + toHex(f);
    }
    if (!r.ok)
        note(trace, clock,
             replies.frames.empty() ? "no answer to StartCommunication"
                                    : (r.meaning.why.empty() ? "StartCommunication refused" : r.meaning.why));
    return r;
}

} // namespace kvx::link
