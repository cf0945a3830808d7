#pragma once

#include <string>
#include <vector>

namespace kvx::link {

// What an ELM327's answer to a request or an initiation means for the link.
struct ElmAnswer {
    enum class Kind {
        Data,        // data lines follow
        Silence,     // NO DATA: the car did not answer
        NoConnection // UNABLE TO CONNECT, BUS INIT: ...ERROR: the wake-up failed
    };
    Kind kind = Kind::Silence;
    std::vector<std::string> data; // hex lines, spaces removed
    bool busInitOk = false;        // a "BUS INIT: ...OK" came before the data
};

// Reads the lines of one answer. "SEARCHING..." is a prefix, not an answer. The adapter's own
// faults ("?", STOPPED, CAN ERROR, BUFFER FULL, <DATA ERROR, or any other text that is not hex)
// throw LinkError with a plain message naming what was sent.
ElmAnswer readElmAnswer(const std::vector<std::string>& lines, const std::string& sent);

} // namespace kvx::link
