#include "log/LogGraph.h"

#include "log/LogRows.h"
#include "session/GraphModel.h"

namespace kvx::log {

bool LoadLogIntoGraph(const std::string& logPath, const LiveDecoding& decoding, GraphModel& graph)
{
    graph.clear();
    bool timed = false;
    double t = 0;
    ReadLogFrames(logPath, decoding, [&](const LogFrame& frame) {
        // A frame too long to carry its time keeps the time of the one before it.
        timed = timed || frame.receivedMs.has_value();
        if (frame.receivedMs)
            t = static_cast<double>(*frame.receivedMs) / 1000.0;
        else if (!timed)
            t = static_cast<double>(frame.number);
        for (const LogRow& row : frame.rows)
            graph.offer(row.item, row.description, true, row.metric, row.us, t);
    });
    return timed;
}

} // namespace kvx::log
