#pragma once

#include "log/ReplayFrames.h"
#include "session/ValueText.h"

#include <ostream>
#include <string>

namespace kvx::log {

struct ExportResult {
    long frames = 0;     // frames read (a Nissan register or a Toyota parameter gives a line per item)
    std::string damage;  // why the export stopped before the end of the file, "" when it did not
};

enum class ExportFormat { Csv, Json };

// Writes a live-data log a line per item of each frame: its receive time in seconds (blank or
// null when the log has none), the frame number (from 1), parameter or item, its description, and
// the metric and the US value each as number and unit. CSV has a heading line; JSON is an object
// per line. Decoded as ReadLogFrames does; rows up to a damaged record are kept and the damage
// reported. Throws LogError when the file cannot be read or is not a log the player shows.
ExportResult ExportLog(const std::string& logPath, const LiveDecoding& decoding, ExportFormat format, std::ostream& out);

// The same export into the file csvPath, which appears only once complete (written beside it
// under another name, then renamed into place): a refused or failed export leaves whatever stood
// there. An output that is the log itself, by any path or link, is refused. Throws LogError for a
// refusal or a failed write, with nothing written.
ExportResult ExportLogFile(const std::string& logPath, const LiveDecoding& decoding, ExportFormat format,
                           const std::string& csvPath);

} // namespace kvx::log
