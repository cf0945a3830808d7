#include "link/ReplyCollector.h"

#include "link/KLineTiming.h"

#include <algorithm>

namespace kvx::link {

namespace {

// A line that never falls silent is broken; stop listening rather than hang.
constexpr std::size_t kMaxReplyBytes = 4096;

bool endsWith(const std::vector<TimedByte>& got, const Bytes& frame)
{
    if (frame.size() > got.size())
        return false;
    return std::equal(frame.begin(), frame.end(), got.end() - static_cast<long>(frame.size()),
                      [](std::uint8_t a, const TimedByte& b) { return a == b.value; });
}

} // namespace

CollectedReplies collectReplies(ByteLink& io, LineKind kind, const ReplyAddressing& addressing,
                                const std::function<void()>& idle, TraceSink* trace)
{
    CollectedReplies out;
    std::vector<TimedByte> got;
    Micros deadline = io.lastActivity() + kline::kP2Max;
    bool pending = false;
    while (got.size() < kMaxReplyBytes) {
        const auto b = pending ? io.receiveIdling(deadline, idle) : io.receive(deadline);
        if (!b)
            break;
        got.push_back(*b);
        deadline = b->time + kline::kP2Max;
        pending = false;
        const FrameCut cut = cutFrames(kind, got, addressing);
        if (!cut.frames.empty() && isResponsePending(kind, cut.frames.back()) && endsWith(got, cut.frames.back()) &&
            out.pendingReplies < kline::kMaxPendingReplies) {
            ++out.pendingReplies;
            pending = true;
            deadline = b->time + kline::kP2StarMax;
        }
    }
    if (got.size() >= kMaxReplyBytes && trace)
        trace->note(io.lastActivity(), "the line kept talking; stopped listening after 4096 bytes");

    const FrameCut cut = cutFrames(kind, got, addressing);
    for (const auto& d : cut.dropped) {
        if (d.reason == "bad checksum")
            ++out.badChecksums;
        if (trace)
            trace->dropped(d.time, d.bytes, d.reason);
    }
    for (const auto& f : cut.frames) {
        if (isResponsePending(kind, f)) {
            if (trace)
                trace->note(io.lastActivity(), "response pending from unit " + toHex(f.size() > 2 ? f[2] : 0));
            continue;
        }
        out.frames.push_back(f);
    }
    return out;
}

} // namespace kvx::link
