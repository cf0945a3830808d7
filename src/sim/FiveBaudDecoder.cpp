#include "sim/FiveBaudDecoder.h"

#include <cstdlib>

namespace kvx::sim {

FiveBaudResult decodeFiveBaud(link::Micros lowEdge, const std::vector<link::Micros>& edges,
                              link::Micros tolerance)
{
    FiveBaudResult result;
    // levels[i] is the line during bit i: 0 start, 1..8 data, 9 stop.
    int levels[10];
    bool level = false;
    int bit = 0;
    bool fits = true;
    for (link::Micros edge : edges) {
        const link::Micros offset = edge - lowEdge;
        const int boundary = static_cast<int>((offset + kFiveBaudBit / 2) / kFiveBaudBit);
        const link::Micros error = std::llabs(offset - boundary * kFiveBaudBit);
        if (error > result.worstError)
            result.worstError = error;
        if (error > tolerance || boundary <= bit || boundary > 10)
            fits = false;
        if (!fits)
            break;
        while (bit < boundary)
            levels[bit++] = level;
        level = !level;
    }
    if (!fits)
        return result;
    while (bit < 10)
        levels[bit++] = level;
    if (levels[0] || !levels[9])
        return result;
    int address = 0;
    for (int i = 0; i < 8; ++i)
        address |= (levels[1 + i] ? 1 : 0) << i;
    result.address = address;
    return result;
}

} // namespace kvx::sim
