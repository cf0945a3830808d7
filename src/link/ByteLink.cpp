#include "link/ByteLink.h"

#include "link/LinkError.h"

#include <algorithm>
#include <array>

namespace kvx::link {

namespace {
// A USB interface may hold an echo back for its latency timer; beyond this there is no echo.
constexpr Micros kEchoWait = ms(50);
// The window gets its events at least this often during a long wait.
constexpr Micros kIdleSlice = ms(10);
} // namespace

ByteLink::ByteLink(Wire& wire, Clock& clock, TraceSink* trace, int baud)
    : wire_(wire), clock_(clock), trace_(trace), byteTime_((10'000'000 + baud / 2) / (baud > 0 ? baud : 1)),
      lastActivity_(clock.now())
{
}

bool ByteLink::fill(Micros deadline)
{
    std::array<std::uint8_t, 256> buf{};
    const std::size_t n = wire_.read(buf, deadline);
    const Micros t = clock_.now();
    for (std::size_t i = 0; i < n; ++i)
        input_.push_back({buf[i], t});
    return n > 0;
}

void ByteLink::send(std::uint8_t byte)
{
    const Micros sent = clock_.now();
    wire_.write(std::span<const std::uint8_t>(&byte, 1));
    if (trace_)
        trace_->byte(sent, TraceOrigin::Tester, byte);
    const Micros deadline = sent + byteTime_ + kEchoWait;
    while (input_.empty())
        if (!fill(deadline) && clock_.now() >= deadline)
            throw LinkError(LinkError::Kind::NoEcho,
                            "No echo from the interface: is the cable plugged in and powered, and the ignition on?");
    const TimedByte echo = input_.front();
    input_.pop_front();
    lastActivity_ = echo.time;
    // A USB interface hands the echo over late; the byte itself left the wire one byte time after it started.
    byteEnd_ = std::min(echo.time, sent + byteTime_);
    if (trace_)
        trace_->byte(echo.time, TraceOrigin::Echo, echo.value);
    if (echo.value != byte)
        throw LinkError(LinkError::Kind::Collision,
                        "Bus collision: the interface heard " + toHex(echo.value) + " while sending " + toHex(byte) +
                            "; another device is talking on the K-line.");
}

void ByteLink::sendFrame(const Bytes& frame, Micros gap)
{
    // No events between the bytes of a request: a window's pass could stretch a gap past P4max,
    // and the unit would take the request as finished.
    for (std::size_t i = 0; i < frame.size(); ++i) {
        if (i > 0 && gap > 0)
            clock_.sleepUntil(byteEnd_ + gap);
        send(frame[i]);
    }
}

std::optional<TimedByte> ByteLink::receive(Micros deadline)
{
    while (input_.empty())
        if (!fill(deadline) && clock_.now() >= deadline)
            return std::nullopt;
    const TimedByte b = input_.front();
    input_.pop_front();
    lastActivity_ = b.time;
    if (trace_)
        trace_->byte(b.time, TraceOrigin::Ecu, b.value);
    return b;
}

std::optional<TimedByte> ByteLink::receiveIdling(Micros deadline, const std::function<void()>& idle)
{
    if (!idle)
        return receive(deadline);
    for (;;) {
        idle();
        auto b = receive(std::min(deadline, clock_.now() + kIdleSlice));
        if (b || clock_.now() >= deadline)
            return b;
    }
}

void ByteLink::discardInput(const char* why)
{
    Bytes stray;
    for (const auto& b : input_)
        stray.push_back(b.value);
    input_.clear();
    // Bytes still inside the port's buffer are read out so the trace shows them.
    while (fill(clock_.now()))
        for (; !input_.empty(); input_.pop_front())
            stray.push_back(input_.front().value);
    wire_.flushInput();
    if (trace_ && !stray.empty())
        trace_->dropped(clock_.now(), stray, why);
}

Micros ByteLink::setLineLow(bool low)
{
    const Micros before = clock_.now();
    wire_.setBreak(low);
    const Micros after = clock_.now();
    breakCall_ = after - before;
    const Micros edge = before + breakCall_ / 2;
    lastActivity_ = edge;
    if (trace_)
        trace_->lineLow(edge, low);
    return edge;
}

} // namespace kvx::link
