#pragma once

#include "link/Clock.h"
#include "sim/BusRecord.h"

#include <optional>
#include <vector>

namespace kvx::sim {

// The units read the tester's edges with more slack than the tester keeps to.
constexpr link::Micros kUnitEdgeTolerance = link::ms(10);

// Reads the tester's wake-up patterns from the edges it puts on the line, with the times a unit
// measures: a 5-baud address (a first low longer than a fast-init pulse) or the 25 ms fast-init
// pulse. What the car makes of a pattern is the vehicle's business.
class WakeUpDecoder {
public:
    struct Edge {
        bool began = false; // a new pattern began: whatever went on before on the bus is over
        std::optional<InitObservation> fastInit; // a short low pulse ended; a note when not 25 ms
    };

    // The tester pulled the line low (low) or let it go, at t; idleBefore is how long the line
    // had been quiet since the last byte (-1: no byte yet).
    Edge edge(bool low, link::Micros t, link::Micros idleBefore);
    // When the stop bit of the 5-baud byte under way ends; nullopt while none is.
    std::optional<link::Micros> addressEnd() const;
    // The 5-baud byte that has just ended, decoded; a note when it cannot be read. lineLow: the
    // line is still held low.
    InitObservation finishAddress(bool lineLow);
    // While a pattern's edges are read, the tester's bytes are no messages.
    bool busy() const { return state_ != State::Idle; }
    link::Micros lowEdge() const { return lowEdge_; }

private:
    enum class State { Idle, LowPulse, FiveBaud };
    InitObservation observe(InitObservation::Kind kind) const;

    State state_ = State::Idle;
    link::Micros lowEdge_ = 0;
    link::Micros idleBefore_ = -1;
    std::vector<link::Micros> edges_;
};

} // namespace kvx::sim
