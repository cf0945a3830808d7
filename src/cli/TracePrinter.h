#pragma once

#include "link/Trace.h"

#include <cstdio>
#include <optional>

namespace kvx::cli {

// Prints the trace of any kvx command: one line per byte, edge, timing or dropped frame, with the
// time in milliseconds and microseconds since the first event.
class TracePrinter final : public link::TraceSink {
public:
    explicit TracePrinter(std::FILE* out) : out_(out) {}

    void byte(link::Micros time, link::TraceOrigin origin, std::uint8_t value) override;
    void lineLow(link::Micros time, bool low) override;
    void timing(link::Micros time, const link::TraceTiming& t) override;
    void dropped(link::Micros time, const link::Bytes& bytes, const std::string& reason) override;
    void note(link::Micros time, const std::string& text) override;
    void adapter(link::Micros time, link::AdapterEvent event, const std::string& text) override;

private:
    void stamp(link::Micros time);

    std::FILE* out_;
    std::optional<link::Micros> first_;
};

} // namespace kvx::cli
