#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace kvx {
class GridModel;
}

namespace kvx::log {

// How one kind of log is shown: the grid laid out from the recorded frames when the file is
// opened, then each frame decoded into it during playback.
struct FrameHandler {
    std::function<void(const std::vector<std::string>& frames)> prepare;
    std::function<void(const std::string& frame)> show;
};

// Frame handlers by the header text the player keeps; a new kind of log is one more entry.
using FrameHandlers = std::map<std::string, FrameHandler>;

// The decoding the live-data screens use, for generic service 01 replies.
struct LiveDecoding {
    std::function<std::string(const std::string& message, int selector)> format;
    std::function<std::string(const std::string& pid)> describe;
};

// The live-data decoding of the link's decoders, for logs read without a link (kvx).
LiveDecoding StandardLiveDecoding();

// Appends a ticked row for a recorded item to the replay grid; returns its index.
int AddReplayRow(GridModel& grid, const std::string& id, const std::string& description);

// The parameter of a generic live-data frame (the first byte after the service), "" when it has none.
std::string FramePid(const std::string& frame);

// Generic logs: a row per recorded parameter in the order first seen; a frame updates the row of
// its parameter with the two value texts and leaves the grid alone when no row has it.
FrameHandler GenericFrameHandler(GridModel& grid, LiveDecoding decoding);

} // namespace kvx::log
