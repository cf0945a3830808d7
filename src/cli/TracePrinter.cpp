#include "cli/TracePrinter.h"

namespace kvx::cli {

namespace {

const char* originName(link::TraceOrigin o)
{
    switch (o) {
    case link::TraceOrigin::Tester: return "tester";
    case link::TraceOrigin::Echo: return "echo  ";
    case link::TraceOrigin::Ecu: return "ECU   ";
    }
    return "?";
}

double millis(link::Micros us) { return static_cast<double>(us) / 1000.0; }

} // namespace

void TracePrinter::stamp(link::Micros time)
{
    if (!first_)
        first_ = time;
    std::fprintf(out_, "%12.3f ms  ", millis(time - *first_));
}

void TracePrinter::byte(link::Micros time, link::TraceOrigin origin, std::uint8_t value)
{
    stamp(time);
    std::fprintf(out_, "%s %s\n", originName(origin), link::toHex(value).c_str());
}

void TracePrinter::lineLow(link::Micros time, bool low)
{
    stamp(time);
    std::fprintf(out_, "line   %s\n", low ? "low (break on)" : "high (break off)");
}

void TracePrinter::timing(link::Micros time, const link::TraceTiming& t)
{
    stamp(time);
    std::fprintf(out_, "timing %-40s %9.3f ms  window %.3f..%.3f ms  %s\n", t.name.c_str(), millis(t.measured),
                 millis(t.min), millis(t.max), t.inside() ? "ok" : "OUTSIDE");
}

void TracePrinter::dropped(link::Micros time, const link::Bytes& bytes, const std::string& reason)
{
    stamp(time);
    std::fprintf(out_, "drop   %s: %s\n", reason.c_str(), link::toHex(bytes).c_str());
}

void TracePrinter::note(link::Micros time, const std::string& text)
{
    stamp(time);
    std::fprintf(out_, "note   %s\n", text.c_str());
}

void TracePrinter::adapter(link::Micros time, link::AdapterEvent event, const std::string& text)
{
    stamp(time);
    switch (event) {
    case link::AdapterEvent::Command: std::fprintf(out_, "sent   %s\n", text.c_str()); break;
    case link::AdapterEvent::Line: std::fprintf(out_, "line   %s\n", text.c_str()); break;
    case link::AdapterEvent::Prompt: std::fprintf(out_, "prompt %s\n", text.c_str()); break;
    }
}

} // namespace kvx::cli
