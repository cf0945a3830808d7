#pragma once

#include <string>

namespace kvx::log {

// What a log says about itself, for `kvx log-info`.
struct LogSummary {
    std::string header;
    std::string date;
    std::string gridRows;
    std::string frameCount;  // record 99, as written ("" when the recording was never stopped)
    long framesInFile = 0;   // frame records actually present and readable
    std::string damage;      // why reading stopped early, "" when the file reads to its end
};

// Reads the fixed records and counts the frames. Throws LogError when the file cannot be opened
// or holds no header.
LogSummary SummariseLog(const std::string& path);

} // namespace kvx::log
