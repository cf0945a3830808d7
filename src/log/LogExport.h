#pragma once

#include "log/ReplayFrames.h"

#include <ostream>
#include <string>

namespace kvx::log {

// One CSV field: quoted when it holds a comma, a quote or a line break, quotes doubled.
std::string CsvField(const std::string& text);

struct ExportResult {
    long frames = 0;     // rows written
    std::string damage;  // why the export stopped before the end of the file, "" when it did not
};

// Writes a generic live-data log as CSV, a heading line then one line per frame: frame number
// (from 1), parameter, its description, the metric and the US value texts. Rows up to a damaged
// record are kept and the damage reported. Throws LogError when the file cannot be read or is
// not a generic live-data log.
ExportResult ExportCsv(const std::string& logPath, const LiveDecoding& decoding, std::ostream& out);

} // namespace kvx::log
