#include "cli/Command.h"

#include <algorithm>
#include <numeric>

namespace kvx::cli {

const std::vector<Command>& Commands()
{
    static const std::vector<Command> all = {
        {"clear", "clear the trouble codes (asks no question first)", RunClear},
        {"decode", "decode reply messages (hex) into display text", RunDecode},
        {"dtc", "read the stored (or, with --pending, pending) trouble codes", RunDtc},
        {"export", "write a live-data log as CSV or JSON (time, frame, item, description, values and units)", RunExport},
        {"freeze", "read a freeze frame", RunFreeze},
        {"graph", "draw a live-data log as a chart into a PNG picture (no display needed)", RunGraph},
        {"info", "readiness, OBD standard, oxygen-sensor layout or VIN", RunInfo},
        {"live", "poll live data of any module as the LIVE DATA tab does", RunLive},
        {"log-info", "print a log's header, date, grid-row count and frame count", RunLogInfo},
        {"monitor", "on-board monitoring test results", RunMonitor},
        {"o2", "oxygen-sensor test results of one sensor", RunO2},
        {"raw", "send hex requests to a unit and print the replies", RunRaw},
        {"sim", "serve the virtual vehicle on a pseudo-terminal (--pty)", RunSim},
    };
    return all;
}

namespace {

// Edits (insert, delete, replace, swap two neighbours) that turn a into b.
std::size_t editDistance(const std::string& a, const std::string& b)
{
    std::vector<std::vector<std::size_t>> d(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i)
        d[i][0] = i;
    std::iota(d[0].begin(), d[0].end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i)
        for (std::size_t j = 1; j <= b.size(); ++j) {
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
        }
    return d[a.size()][b.size()];
}

} // namespace

std::string ClosestCommand(const std::string& typed)
{
    std::string lower = typed;
    std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
    std::string best;
    std::size_t bestDistance = 0;
    for (const Command& c : Commands()) {
        // A command the typed word begins, or begins with ("mon", "logs"), is meant whatever its length.
        const bool prefix = !lower.empty() && (c.name.rfind(lower, 0) == 0 || lower.rfind(c.name, 0) == 0);
        const std::size_t distance = prefix ? 0 : editDistance(lower, c.name);
        if (best.empty() || distance < bestDistance) {
            best = c.name;
            bestDistance = distance;
        }
    }
    // Two edits turn a short name into almost any other; allow them only for longer words.
    const std::size_t allowed = lower.size() <= 3 ? 1 : 2;
    return bestDistance <= allowed ? best : std::string();
}

} // namespace kvx::cli
