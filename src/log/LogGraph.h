#pragma once

#include "log/ReplayFrames.h"

#include <string>

namespace kvx {
class GraphModel;
}

namespace kvx::log {

// Puts every frame of a log into a graph at once (a replay at no delay, a picture of a log): the
// time axis is the receive time in seconds, or the frame number for a log without times. Returns
// whether the log had times. Throws LogError as ReadLogFrames does; frames before a damaged
// record are kept.
bool LoadLogIntoGraph(const std::string& logPath, const LiveDecoding& decoding, GraphModel& graph);

} // namespace kvx::log
