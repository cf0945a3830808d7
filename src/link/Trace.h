#pragma once

#include "link/Clock.h"
#include "link/Hex.h"

#include <cstdint>
#include <string>

namespace kvx::link {

// Who put a byte on the line: the tester, the interface echoing the tester, or a unit.
enum class TraceOrigin { Tester, Echo, Ecu };

// A step of the dialogue with a smart adapter: a command line sent, a line it answered, its prompt.
enum class AdapterEvent { Command, Line, Prompt };

// A measured time beside the window it must fall in ("W1", "5-baud bit 3", ...).
struct TraceTiming {
    std::string name;
    Micros measured = 0;
    Micros min = 0;
    Micros max = 0;
    bool inside() const { return measured >= min && measured <= max; }
};

// What a person debugging a cable wants to see: every byte, every line edge, every init timing
// against its window, and every frame the link threw away.
class TraceSink {
public:
    virtual ~TraceSink() = default;
    virtual void byte(Micros time, TraceOrigin origin, std::uint8_t value) = 0;
    virtual void lineLow(Micros time, bool low) = 0;
    virtual void timing(Micros time, const TraceTiming& t) = 0;
    virtual void dropped(Micros time, const Bytes& bytes, const std::string& reason) = 0;
    virtual void note(Micros time, const std::string& text) = 0;
    // A sink without a view of its own for the adapter dialogue shows it as notes.
    virtual void adapter(Micros time, AdapterEvent event, const std::string& text)
    {
        note(time, (event == AdapterEvent::Command ? "adapter <- " : event == AdapterEvent::Line ? "adapter -> " : "adapter ") +
                       text);
    }
};

} // namespace kvx::link
