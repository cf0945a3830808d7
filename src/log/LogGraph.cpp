#include "log/LogGraph.h"

#include "log/LogRows.h"
#include "session/GraphModel.h"

namespace kvx::log {

LogGraphResult LoadLogIntoGraph(const std::string& logPath, const LiveDecoding& decoding, GraphModel& graph)
{
    LogGraphResult result;
    // A log either has times or it has none, but for frames too long to carry one. Frames are
    // drawn at their numbers until a time turns up; should one turn up after such frames (a log
    // that opens with long frames), the log is drawn again with them at that first time.
    std::optional<double> firstTime;
    for (int pass = 0; pass < 2; ++pass) {
        graph.clear();
        result.timed = firstTime.has_value();
        double t = firstTime.value_or(0);
        bool numbered = false, again = false;
        const LogReadResult read = ReadLogFrames(logPath, decoding, [&](const LogFrame& frame) {
            if (again)
                return;
            if (frame.receivedMs) {
                t = static_cast<double>(*frame.receivedMs) / 1000.0;
                if (numbered) {
                    firstTime = t;
                    again = true;
                    return;
                }
                result.timed = true;
            } else if (!result.timed) {
                t = static_cast<double>(frame.number);
                numbered = true;
            }
            // A frame without its time in a log with times keeps the time of the one before it.
            for (const LogRow& row : frame.rows)
                graph.offer(row.item, row.description, true, row.metric, row.us, t);
        });
        result.frames = read.frames;
        result.damage = read.damage;
        if (!again)
            break;
    }
    return result;
}

} // namespace kvx::log
