#pragma once

#include <string>
#include <vector>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// The frames of a reply, split at ":". An empty reply gives one empty frame, so "the last frame"
// always exists.
std::vector<std::string> SplitFrames(const std::string& reply);

// The answering unit's address: characters 5-6 of a frame ("" when the frame is shorter).
std::string FrameSource(const std::string& frame);

// True for a frame from the engine unit in use; frames of other units are not shown.
bool FromEcu(const Session& session, const std::string& frame);

// A number 0-255 as two upper-case hex digits.
std::string HexByte(int value);

} // namespace kvx::obd
