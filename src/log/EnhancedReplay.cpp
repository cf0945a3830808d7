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

unsigned char uchar(char c) { return static_cast<unsigned char>(c); }

bool isSwitchRegister(const std::string& identifier) { return identifier.rfind("13", 0) == 0; }

std::string toyotaMessage(const std::string& frame) { return frame.substr(0, frame.find(' ')); }

std::string toyotaParameter(const std::string& message)
{
    return message.size() >= 10 ? message.substr(8, 2) : std::string();
}

std::string twoDigits(int n) { return (n < 10 ? "0" : "") + std::to_string(n); }

} // namespace

std::string NissanFrameIdentifier(const std::string& frame)
{
    if (frame.size() < 8 || frame.compare(2, 2, "62") != 0)
        return {};
    return frame.substr(4, 4);
}

FrameHandler NissanFrameHandler(GridModel& grid, const link::NissanDecoder& decoder, std::function<int()> moduleIndex)
{
    FrameHandler handler;
    handler.prepare = [&grid, &decoder, moduleIndex](const std::vector<std::string>& frames) {
        data::LayoutLiveDataGrid(grid);
        const int module = moduleIndex();
        std::set<std::string> seen;
        for (const auto& frame : frames) {
            const std::string id = NissanFrameIdentifier(frame);
            if (id.empty() || !seen.insert(id).second)
                continue;
            if (!isSwitchRegister(id)) {
                AddReplayRow(grid, id, decoder.SensorName(id, module));
                continue;
            }
            for (int bit = 0; bit <= 7; ++bit) {
                const std::string switchId = id + " " + std::to_string(bit);
                const std::string name = decoder.SensorName(switchId, module);
                if (!name.empty())
                    AddReplayRow(grid, switchId, name);
            }
        }
    };
    handler.show = [&grid, &decoder, moduleIndex](const std::string& frame) {
        const std::string id = NissanFrameIdentifier(frame);
        if (id.empty())
            return;
        const int module = moduleIndex();
        for (int row = 1; row < grid.rows(); ++row) {
            const std::string& rowId = grid.text(row, obd::PidColumn);
            if (rowId.compare(0, 4, id) != 0)
                continue;
            if (isSwitchRegister(id)) {
                const int bit = rowId.back() - '0';
                grid.setText(row, obd::ValueColumn, decoder.SensorValue(frame, 1, bit, module));
            } else {
                grid.setText(row, obd::ValueColumn, decoder.SensorValue(frame, 1, 0, module));
                grid.setText(row, obd::AltValueColumn, decoder.SensorValue(frame, 2, 0, module));
            }
        }
    };
    return handler;
}

FrameHandler ToyotaFrameHandler(GridModel& grid, const link::ToyotaDecoder& decoder)
{
    FrameHandler handler;
    handler.prepare = [&grid, &decoder](const std::vector<std::string>& frames) {
        data::LayoutLiveDataGrid(grid);
        std::set<std::string> seen;
        for (const auto& frame : frames) {
            const std::string parameter = toyotaParameter(toyotaMessage(frame));
            if (parameter.empty() || !seen.insert(parameter).second)
                continue;
            for (int a = 1; a <= kToyotaMaxByte; ++a)
                for (int b = 0; b <= kToyotaMaxBit; ++b) {
                    const std::string name = decoder.SensorName(parameter, a, b);
                    if (!name.empty())
                        AddReplayRow(grid, parameter + twoDigits(a) + " " + std::to_string(b), name);
                }
        }
    };
    handler.show = [&grid, &decoder](const std::string& frame) {
        const std::string message = toyotaMessage(frame);
        const std::string parameter = toyotaParameter(message);
        if (parameter.empty())
            return;
        for (int row = 1; row < grid.rows(); ++row) {
            const std::string& rowId = grid.text(row, obd::PidColumn);
            if (rowId.size() < 6 || rowId.compare(0, 2, parameter) != 0 || !std::isdigit(uchar(rowId[2])) ||
                !std::isdigit(uchar(rowId[3])))
                continue;
            const int a = (rowId[2] - '0') * 10 + (rowId[3] - '0');
            const int b = rowId.back() - '0';
            grid.setText(row, obd::ValueColumn, decoder.SensorValue(a, b, message, 1));
            grid.setText(row, obd::AltValueColumn, decoder.SensorValue(a, b, message, 2));
        }
    };
    return handler;
}

} // namespace kvx::log
