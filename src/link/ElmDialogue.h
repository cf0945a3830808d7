#pragma once

#include "link/Clock.h"
#include "link/Trace.h"
#include "link/Wire.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kvx::link {

// The serial dialogue with an ELM327: a command line ended by CR goes out, and the adapter's
// answer lines come back until its prompt ">". Echoed commands and empty lines are left out.
class ElmDialogue {
public:
    ElmDialogue(Wire& wire, Clock& clock, TraceSink* trace, std::function<void()> idle);

    // The answer lines, or nullopt when no prompt came before the timeout.
    std::optional<std::vector<std::string>> tryCommand(const std::string& text, Micros timeout);
    // The same, but a missing prompt throws LinkError: the adapter stopped talking.
    std::vector<std::string> command(const std::string& text, Micros timeout);

    void setTrace(TraceSink* trace) { trace_ = trace; }
    void setIdleHook(std::function<void()> idle) { idle_ = std::move(idle); }

private:
    Wire& wire_;
    Clock& clock_;
    TraceSink* trace_;
    std::function<void()> idle_;
};

} // namespace kvx::link
