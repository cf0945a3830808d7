#pragma once

#include "link/Clock.h"
#include "link/Hex.h"
#include "link/Trace.h"

#include <cstdint>
#include <deque>
#include <optional>

namespace kvx::sim {

// The bytes still to happen on the K-line, in time order: the tester's, the interface's echoes and
// the units'. A byte happens when its stop bit ends. The tester and the units each send one byte
// at a time; a unit's byte waits for the units' previous one.
class LineSchedule {
public:
    struct Byte {
        link::Micros time; // the end of the stop bit
        link::TraceOrigin origin;
        std::uint8_t value;
    };

    // Ten bits (start, eight data, stop) at this rate.
    void setBaud(int baud);
    link::Micros byteTime() const { return byteTime_; }

    // The tester's bytes, back to back from now or from the end of its bytes still going out.
    void tester(const link::Bytes& bytes, link::Micros now);
    // The interface hears the tester's byte as it ends, before anything else due then.
    void echo(std::uint8_t byte, link::Micros end);
    // A unit's byte, from start or once the units' previous byte is out; returns when it ends.
    link::Micros unit(std::uint8_t byte, link::Micros start, link::TraceOrigin origin = link::TraceOrigin::Ecu);
    // A unit's frame, P1 between its bytes; returns when its last byte ends.
    link::Micros frame(const link::Bytes& frame, link::Micros start, link::Micros p1);

    std::optional<link::Micros> next() const;
    // The byte that happens at t, taken off the schedule; nullopt when none does.
    std::optional<Byte> take(link::Micros t);

private:
    void insert(const Byte& b);

    std::deque<Byte> bytes_;
    link::Micros byteTime_ = 0;
    link::Micros testerFree_ = 0;
    link::Micros unitFree_ = 0;
};

} // namespace kvx::sim
