#pragma once

#include "link/Clock.h"
#include "link/Hex.h"
#include "link/Trace.h"
#include "sim/FaultPlan.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kvx::sim {

struct BusEvent {
    enum class Kind { BreakOn, BreakOff, Byte };
    link::Micros time = 0; // edges: when the line changed; bytes: the end of the stop bit
    Kind kind = Kind::Byte;
    link::TraceOrigin origin = link::TraceOrigin::Tester;
    std::uint8_t byte = 0;
};

// What the vehicle made of the tester's wake-up, with the times it measured.
struct InitObservation {
    enum class Kind { FiveBaud, FastInit };
    Kind kind = Kind::FiveBaud;
    link::Micros lowEdge = 0;           // the falling edge that began the wake-up
    link::Micros idleBefore = -1;       // quiet line before lowEdge since the last byte; -1 if none
    std::vector<link::Micros> bitEdges; // 5-baud: every edge after the start edge
    link::Micros worstBitError = 0;     // 5-baud: largest distance of an edge from its 200 ms grid
    int address = -1;                   // 5-baud: the decoded address, -1 when not decodable
    link::Micros lowWidth = 0;          // fast init: how long the line was held low
    link::Micros firstByteAfterLow = -1; // fast init: start of StartCommunication after the low edge
    bool accepted = false;
    std::string note;                   // why a wake-up was refused, in plain words
};

// A tester request the units heard inside a session, and the fault the plan gave it.
struct RequestObservation {
    link::Micros time = 0; // the start of its first byte
    Fault fault = Fault::None;
};

// The bus's own account of everything that happened on it, for measuring timing windows.
struct BusRecord {
    std::vector<BusEvent> events;
    std::vector<InitObservation> inits;
    std::vector<link::Micros> sessionDrops; // when a unit gave its session up after P3max
    std::vector<RequestObservation> requests;
    // Every frame a unit put on the line, as it was sent (stray bytes of line noise are none).
    std::vector<link::Bytes> framesSent;

    std::vector<BusEvent> bytes(link::TraceOrigin origin) const;
    std::vector<BusEvent> edges() const;
};

} // namespace kvx::sim
