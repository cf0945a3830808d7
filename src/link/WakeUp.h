#pragma once

#include "link/ByteLink.h"
#include "link/KeyBytes.h"

#include <cstdint>
#include <functional>
#include <string>

namespace kvx::link {

struct WakeUpTiming {
    Micros w4 = 0;        // the tester's pause after KB2 before it answers with KB2 inverted
    Micros highAfterLow = 0; // fast init: line high after the 25 ms low pulse, before StartCommunication
    Micros p4 = 0;        // between the bytes of the StartCommunication request
};

struct WakeUpResult {
    bool ok = false;
    std::uint8_t kb1 = 0;
    std::uint8_t kb2 = 0;
    KeyBytesMeaning meaning;
    std::string text; // key bytes (slow init) or the positive replies (fast init), as hex
};

// ISO 9141-2 / ISO 14230 slow init: the address at 5 baud, then sync, key bytes and the inverted
// KB2 / inverted address handshake. idle runs while waiting for the sync byte.
WakeUpResult fiveBaudInit(ByteLink& io, Clock& clock, TraceSink* trace, std::uint8_t address, Protocol protocol,
                          const WakeUpTiming& timing, const std::function<void()>& idle);

// ISO 14230 fast init: 25 ms low, then StartCommunication (the given frame) and its positive reply.
WakeUpResult fastInit(ByteLink& io, Clock& clock, TraceSink* trace, const Bytes& startFrame,
                      const WakeUpTiming& timing);

} // namespace kvx::link
