#include "log/EnhancedReplay.h"

#include "data/GridLayouts.h"
#include "data/ItemRows.h"
#include "link/ReplyText.h"
#include "link/decode/NissanDecoder.h"
#include "link/decode/ToyotaDecoder.h"
#include "session/GridModel.h"

#include <set>

namespace kvx::log {

using data::ItemRow;

namespace {

// Lays the grid out with the rows of each item in the order the frames first name it.
void prepareRows(GridModel& grid, const std::vector<std::string>& frames,
                 const std::function<std::string(const std::string&)>& itemOf,
                 const std::function<std::vector<ItemRow>(const std::string&)>& rowsOf)
{
    data::LayoutLiveDataGrid(grid);
    std::set<std::string> seen;
    for (const auto& frame : frames) {
        const std::string item = itemOf(frame);
        if (item.empty() || !seen.insert(item).second)
            continue;
        for (const ItemRow& row : rowsOf(item))
            AddReplayRow(grid, row.label, row.name);
    }
}

// Writes both value texts into every row whose label starts with the item.
void showRows(GridModel& grid, const std::string& item, const std::function<std::string(const std::string&, int)>& value)
{
    if (item.empty())
        return;
    for (int row = 1; row < grid.rows(); ++row) {
        const std::string label = grid.text(row, data::PidColumn);
        if (label.compare(0, item.size(), item) != 0)
            continue;
        grid.setText(row, data::ValueColumn, value(label, 1));
        grid.setText(row, data::AltValueColumn, value(label, 2));
    }
}

} // namespace

std::string NissanFrameIdentifier(const std::string& frame)
{
    if (frame.size() < 8 || frame.compare(2, 2, "62") != 0)
        return {};
    return frame.substr(4, 4);
}

std::string ToyotaFrameMessage(const std::string& frame) { return frame.substr(0, frame.find(' ')); }

std::string ToyotaParameter(const std::string& message)
{
    return link::dataText(message, 0);
}

FrameHandler NissanFrameHandler(GridModel& grid, const link::NissanDecoder& decoder, std::function<int()> moduleIndex)
{
    FrameHandler handler;
    handler.prepare = [&grid, &decoder, moduleIndex](const std::vector<std::string>& frames) {
        const int module = moduleIndex();
        prepareRows(grid, frames, NissanFrameIdentifier,
                    [&](const std::string& id) { return data::NissanRows(decoder, id, module); });
    };
    handler.show = [&grid, &decoder, moduleIndex](const std::string& frame) {
        const int module = moduleIndex();
        showRows(grid, NissanFrameIdentifier(frame), [&](const std::string& label, int kind) {
            return data::NissanRowValue(decoder, label, frame, kind, module);
        });
    };
    return handler;
}

FrameHandler ToyotaFrameHandler(GridModel& grid, const link::ToyotaDecoder& decoder)
{
    FrameHandler handler;
    handler.prepare = [&grid, &decoder](const std::vector<std::string>& frames) {
        prepareRows(grid, frames, [](const std::string& frame) { return ToyotaParameter(ToyotaFrameMessage(frame)); },
                    [&](const std::string& parameter) { return data::ToyotaRows(decoder, parameter); });
    };
    handler.show = [&grid, &decoder](const std::string& frame) {
        const std::string message = ToyotaFrameMessage(frame);
        showRows(grid, ToyotaParameter(message), [&](const std::string& label, int kind) {
            return data::ToyotaRowValue(decoder, label, message, kind);
        });
    };
    return handler;
}

} // namespace kvx::log
