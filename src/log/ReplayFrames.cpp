#include "log/ReplayFrames.h"

#include "data/GridLayouts.h"
#include "link/ReplyText.h"
#include "link/decode/PidValue.h"
#include "session/GridModel.h"

#include <set>

namespace kvx::log {

LiveDecoding StandardLiveDecoding()
{
    return {[](const std::string& message, int selector) { return link::decode::formatLiveValue(message, selector); },
            [](const std::string& pid) { return link::decode::describePid(pid, ""); }};
}

int AddReplayRow(GridModel& grid, const std::string& id, const std::string& description)
{
    const int row = grid.addRow();
    grid.setCell(row, data::MarkerColumn, data::MarkerCell(data::kTickedMarker));
    grid.setText(row, data::PidColumn, id);
    grid.setText(row, data::DescriptionColumn, description);
    return row;
}

std::string FramePid(const std::string& frame)
{
    return link::dataText(frame, 0);
}

FrameHandler GenericFrameHandler(GridModel& grid, LiveDecoding decoding)
{
    FrameHandler handler;
    handler.prepare = [&grid, decoding](const std::vector<std::string>& frames) {
        data::LayoutLiveDataGrid(grid);
        std::set<std::string> seen;
        for (const auto& frame : frames) {
            const std::string pid = FramePid(frame);
            if (pid.empty() || !seen.insert(pid).second)
                continue;
            AddReplayRow(grid, pid, decoding.describe(pid));
        }
    };
    handler.show = [&grid, decoding](const std::string& frame) {
        const std::string pid = FramePid(frame);
        if (pid.empty())
            return;
        for (int row = 1; row < grid.rows(); ++row) {
            if (grid.text(row, 1) != pid)
                continue;
            grid.setText(row, 3, decoding.format(frame, 1));
            grid.setText(row, 4, decoding.format(frame, 2));
            return;
        }
    };
    return handler;
}

} // namespace kvx::log
