#pragma once

#include "log/ReplayFrames.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kvx::log {

// One item of a frame as the live-data grid shows it: label, description and both value texts.
struct LogRow {
    std::string item, description, metric, us;
};

// A frame of a log decoded: its number (from 1), its receive time when the log has one, and a
// row per item it carries (none for an empty reply or a refusal).
struct LogFrame {
    long number = 0;
    std::optional<long> receivedMs;
    std::vector<LogRow> rows;
};

struct LogReadResult {
    std::string header;
    long frames = 0;     // frames read
    std::string damage;  // why reading stopped before the end of the file, "" when it did not
};

// Reads every frame of a live-data log the player shows: generic logs decoded with the given
// decoding, Nissan engine and Toyota logs with their makes' decoders. Frames up to a damaged
// record are handed on and the damage reported. Throws LogError when the file cannot be read or
// is not a log the player shows.
LogReadResult ReadLogFrames(const std::string& logPath, const LiveDecoding& decoding,
                            const std::function<void(const LogFrame&)>& each);

} // namespace kvx::log
