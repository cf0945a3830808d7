#pragma once

#include "sim/BusRecord.h"

#include <vector>

namespace kvx::test {

// When the tester's bytes of the last request started and when the units' last byte before it
// ended, from the bus's own record.
struct RequestOnBus {
    link::Micros lastUnitByte = 0;
    std::vector<link::Micros> starts;
    link::Micros quietBefore() const { return starts.empty() ? 0 : starts.front() - lastUnitByte; }
};

inline RequestOnBus lastRequest(const sim::BusRecord& record, link::Micros byteTime)
{
    const auto& ev = record.events;
    // The last run of tester bytes and their echoes, and the unit byte before it.
    std::size_t end = ev.size();
    while (end > 0 && ev[end - 1].origin != link::TraceOrigin::Tester)
        --end;
    std::size_t begin = end;
    while (begin > 0 && ev[begin - 1].origin != link::TraceOrigin::Ecu)
        --begin;
    RequestOnBus r;
    for (std::size_t i = begin; i < end; ++i)
        if (ev[i].origin == link::TraceOrigin::Tester)
            r.starts.push_back(ev[i].time - byteTime);
    if (begin > 0)
        r.lastUnitByte = ev[begin - 1].time;
    return r;
}

} // namespace kvx::test
