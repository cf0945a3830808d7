#include "sim/LineSchedule.h"

#include <algorithm>

namespace kvx::sim {

void LineSchedule::setBaud(int baud) { byteTime_ = (10'000'000 + baud / 2) / std::max(baud, 1); }

void LineSchedule::insert(const Byte& b)
{
    const auto at = std::upper_bound(bytes_.begin(), bytes_.end(), b.time,
                                     [](link::Micros t, const Byte& x) { return t < x.time; });
    bytes_.insert(at, b);
}

void LineSchedule::tester(const link::Bytes& bytes, link::Micros now)
{
    link::Micros start = std::max(now, testerFree_);
    for (std::uint8_t b : bytes) {
        start += byteTime_;
        insert({start, link::TraceOrigin::Tester, b});
    }
    testerFree_ = start;
}

void LineSchedule::echo(std::uint8_t byte, link::Micros end) { bytes_.push_front({end, link::TraceOrigin::Echo, byte}); }

link::Micros LineSchedule::unit(std::uint8_t byte, link::Micros start, link::TraceOrigin origin)
{
    const link::Micros end = std::max(start, unitFree_) + byteTime_;
    insert({end, origin, byte});
    unitFree_ = end;
    return end;
}

link::Micros LineSchedule::frame(const link::Bytes& frame, link::Micros start, link::Micros p1)
{
    link::Micros end = start;
    for (std::size_t i = 0; i < frame.size(); ++i)
        end = unit(frame[i], i == 0 ? start : end + p1);
    return end;
}

std::optional<link::Micros> LineSchedule::next() const
{
    if (bytes_.empty())
        return std::nullopt;
    return bytes_.front().time;
}

std::optional<LineSchedule::Byte> LineSchedule::take(link::Micros t)
{
    if (bytes_.empty() || bytes_.front().time != t)
        return std::nullopt;
    const Byte b = bytes_.front();
    bytes_.pop_front();
    return b;
}

} // namespace kvx::sim
