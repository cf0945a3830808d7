#include "log/EnhancedReplay.h"

#include "data/GridLayouts.h"
#include "link/decode/NissanDecoder.h"
#include "link/decode/ToyotaDecoder.h"
#include "obd/LiveData.h"
#include "session/GridModel.h"

#include <cctype>
#include <set>

namespace kvx::log {

namespace {

constexpr int kToyotaMaxByte = 8;
constexpr int kToyotaMaxBit = 8;
constexpr int kSwitchesPerRegister = 8;

bool isDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }

bool isSwitchRegister(const std::string& identifier) { return identifier.rfind("13", 0) == 0; }

std::string twoDigits(int n) { return (n < 10 ? "0" : "") + std::to_string(n); }

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
        const std::string label = grid.text(row, obd::PidColumn);
        if (label.compare(0, item.size(), item) != 0)
            continue;
        grid.setText(row, obd::ValueColumn, value(label, 1));
        grid.setText(row, obd::AltValueColumn, value(label, 2));
    }
}

} // namespace

std::string NissanFrameIdentifier(const std::string& frame)
{
    if (frame.size() < 8 || frame.compare(2, 2, "62") != 0)
        return {};
    return frame.substr(4, 4);
}

std::vector<ItemRow> NissanRows(const link::NissanDecoder& decoder, const std::string& identifier, int moduleIndex)
{
    if (!isSwitchRegister(identifier))
        return {{identifier, decoder.SensorName(identifier, moduleIndex)}};
    std::vector<ItemRow> rows;
    for (int bit = 0; bit < kSwitchesPerRegister; ++bit) {
        const std::string label = identifier + " " + std::to_string(bit);
        std::string name = decoder.SensorName(label, moduleIndex);
        if (!name.empty())
            rows.push_back({label, std::move(name)});
    }
    return rows;
}

std::string NissanRowValue(const link::NissanDecoder& decoder, const std::string& label, const std::string& frame,
                           int kind, int moduleIndex)
{
    if (!isSwitchRegister(label))
        return decoder.SensorValue(frame, kind, 0, moduleIndex);
    if (kind != 1 || label.empty() || !isDigit(label.back()))
        return {};
    return decoder.SensorValue(frame, 1, label.back() - '0', moduleIndex);
}

std::string ToyotaFrameMessage(const std::string& frame) { return frame.substr(0, frame.find(' ')); }

std::string ToyotaParameter(const std::string& message)
{
    return message.size() >= 10 ? message.substr(8, 2) : std::string();
}

std::vector<ItemRow> ToyotaRows(const link::ToyotaDecoder& decoder, const std::string& parameter)
{
    std::vector<ItemRow> rows;
    for (int a = 1; a <= kToyotaMaxByte; ++a)
        for (int b = 0; b <= kToyotaMaxBit; ++b) {
            std::string name = decoder.SensorName(parameter, a, b);
            if (!name.empty())
                rows.push_back({parameter + twoDigits(a) + " " + std::to_string(b), std::move(name)});
        }
    return rows;
}

std::string ToyotaRowValue(const link::ToyotaDecoder& decoder, const std::string& label, const std::string& message,
                           int kind)
{
    if (label.size() < 6 || !isDigit(label[2]) || !isDigit(label[3]) || !isDigit(label.back()))
        return {};
    const int a = (label[2] - '0') * 10 + (label[3] - '0');
    return decoder.SensorValue(a, label.back() - '0', message, kind);
}

FrameHandler NissanFrameHandler(GridModel& grid, const link::NissanDecoder& decoder, std::function<int()> moduleIndex)
{
    FrameHandler handler;
    handler.prepare = [&grid, &decoder, moduleIndex](const std::vector<std::string>& frames) {
        const int module = moduleIndex();
        prepareRows(grid, frames, NissanFrameIdentifier,
                    [&](const std::string& id) { return NissanRows(decoder, id, module); });
    };
    handler.show = [&grid, &decoder, moduleIndex](const std::string& frame) {
        const int module = moduleIndex();
        showRows(grid, NissanFrameIdentifier(frame), [&](const std::string& label, int kind) {
            return NissanRowValue(decoder, label, frame, kind, module);
        });
    };
    return handler;
}

FrameHandler ToyotaFrameHandler(GridModel& grid, const link::ToyotaDecoder& decoder)
{
    FrameHandler handler;
    handler.prepare = [&grid, &decoder](const std::vector<std::string>& frames) {
        prepareRows(grid, frames, [](const std::string& frame) { return ToyotaParameter(ToyotaFrameMessage(frame)); },
                    [&](const std::string& parameter) { return ToyotaRows(decoder, parameter); });
    };
    handler.show = [&grid, &decoder](const std::string& frame) {
        const std::string message = ToyotaFrameMessage(frame);
        showRows(grid, ToyotaParameter(message), [&](const std::string& label, int kind) {
            return ToyotaRowValue(decoder, label, message, kind);
        });
    };
    return handler;
}

} // namespace kvx::log
