#pragma once

#include "log/ReplayFrames.h"

#include <string>

namespace kvx {
class GraphModel;
}

namespace kvx::log {

struct LogGraphResult {
    bool timed = false;  // the time axis is the receive time in seconds, not the frame number
    long frames = 0;     // frames read
    std::string damage;  // why reading stopped before the end of the file, "" when it did not
};

// Puts every frame of a log into a graph at once (a replay at no delay, a picture of a log): the
// time axis is the receive time in seconds, or the frame number for a log without times. Throws
// LogError as ReadLogFrames does; frames before a damaged record are kept and the damage told.
LogGraphResult LoadLogIntoGraph(const std::string& logPath, const LiveDecoding& decoding, GraphModel& graph);

} // namespace kvx::log
