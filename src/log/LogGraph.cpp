#include "log/LogGraph.h"

#include "log/LogRows.h"
#include "session/GraphModel.h"

#include <vector>

namespace kvx::log {

LogGraphResult LoadLogIntoGraph(const std::string& logPath, const LiveDecoding& decoding, GraphModel& graph)
{
    graph.clear();
    LogGraphResult result;
    double t = 0;
    // Frames before the first that carries a time wait for it: in a log with times they go at
    // that time, in one without they go at their numbers.
    std::vector<LogFrame> untimed;
    auto offer = [&graph](const LogFrame& frame, double at) {
        for (const LogRow& row : frame.rows)
            graph.offer(row.item, row.description, true, row.metric, row.us, at);
    };
    const LogReadResult read = ReadLogFrames(logPath, decoding, [&](const LogFrame& frame) {
        if (frame.receivedMs) {
            t = static_cast<double>(*frame.receivedMs) / 1000.0;
            if (!result.timed) {
                result.timed = true;
                for (const LogFrame& early : untimed)
                    offer(early, t);
                untimed.clear();
            }
        } else if (!result.timed) {
            // A frame too long to carry its time keeps the time of the one before it.
            untimed.push_back(frame);
            return;
        }
        offer(frame, t);
    });
    for (const LogFrame& frame : untimed)
        offer(frame, static_cast<double>(frame.number));
    result.frames = read.frames;
    result.damage = read.damage;
    return result;
}

} // namespace kvx::log
