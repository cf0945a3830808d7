#include "log/LogSummary.h"

#include "log/LogFile.h"
#include "log/LogFormat.h"
#include "log/LogHeader.h"

namespace kvx::log {

LogSummary SummariseLog(const std::string& path)
{
    LogFile file(path, LogFile::Mode::Read);
    const LogHeaderRecords records = ReadHeaderRecords(file);
    LogSummary summary{records.header, records.date, records.gridRows, records.frameCount, 0, {}};
    try {
        while (file.readRecord(kFirstFrameRecord + summary.framesInFile))
            ++summary.framesInFile;
    } catch (const LogError& e) {
        summary.damage = e.what();
    }
    return summary;
}

} // namespace kvx::log
