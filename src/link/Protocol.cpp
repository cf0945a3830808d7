#include "link/Protocol.h"

#include <array>

namespace kvx::link {

std::string ProtocolName(int protocol)
{
    static const std::array<const char*, kLastProtocol> names{
        "ISO9141 Slow",    "KW2000 Slow",     "KW2000 Fast",     "Try All",
        "CAN 11bit 500k", "CAN 29bit 500k", "CAN 11bit 250k", "CAN 29bit 250k",
    };
    if (protocol < 1 || protocol > kLastProtocol)
        return {};
    return names[static_cast<std::size_t>(protocol - 1)];
}

} // namespace kvx::link
