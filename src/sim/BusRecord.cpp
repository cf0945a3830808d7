#include "sim/BusRecord.h"

namespace kvx::sim {

std::vector<BusEvent> BusRecord::bytes(link::TraceOrigin origin) const
{
    std::vector<BusEvent> out;
    for (const auto& e : events)
        if (e.kind == BusEvent::Kind::Byte && e.origin == origin)
            out.push_back(e);
    return out;
}

std::vector<BusEvent> BusRecord::edges() const
{
    std::vector<BusEvent> out;
    for (const auto& e : events)
        if (e.kind != BusEvent::Kind::Byte)
            out.push_back(e);
    return out;
}

} // namespace kvx::sim
