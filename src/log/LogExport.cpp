#include "log/LogExport.h"

#include "log/LogFile.h"
#include "log/LogFormat.h"
#include "log/LogHeader.h"

namespace kvx::log {

std::string CsvField(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (char c : text) {
        if (c == '"')
            quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

ExportResult ExportCsv(const std::string& logPath, const LiveDecoding& decoding, std::ostream& out)
{
    LogFile file(logPath, LogFile::Mode::Read);
    const std::string header = ReadHeaderRecords(file).header;
    if (header != kGenericHeader)
        throw LogError("Only generic live-data logs can be exported; this log is headed \"" + header + "\".");

    out << "Frame,PID,Description,Metric,US\r\n";
    ExportResult result;
    try {
        while (auto frame = file.readRecord(kFirstFrameRecord + result.frames)) {
            ++result.frames;
            const std::string pid = FramePid(*frame);
            out << result.frames << ',' << CsvField(pid) << ',';
            if (!pid.empty())
                out << CsvField(decoding.describe(pid)) << ',' << CsvField(decoding.format(*frame, 1)) << ','
                    << CsvField(decoding.format(*frame, 2));
            else
                out << ",,";
            out << "\r\n";
        }
    } catch (const LogError& e) {
        result.damage = e.what();
    }
    return result;
}

} // namespace kvx::log
