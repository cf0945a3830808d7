#pragma once

#include "log/ReplayFrames.h"

#include <functional>
#include <string>
#include <vector>

namespace kvx {
class GridModel;
}
namespace kvx::link {
class NissanDecoder;
class ToyotaDecoder;
}

namespace kvx::log {

// One line of the live grid for a recorded item: its column 1 label and its name.
struct ItemRow {
    std::string label;
    std::string name;
};

// The identifier of a recorded Nissan reply "LL 62 II II ..": characters 5-8, "" for a negative,
// empty or short reply.
std::string NissanFrameIdentifier(const std::string& frame);

// The rows an identifier fills: one, or one per named switch of a block 13 register.
std::vector<ItemRow> NissanRows(const link::NissanDecoder& decoder, const std::string& identifier, int moduleIndex);

// The value text (kind 1 metric, 2 US) of a Nissan row's label in a recorded reply; switches
// have one text only.
std::string NissanRowValue(const link::NissanDecoder& decoder, const std::string& label, const std::string& frame,
                           int kind, int moduleIndex);

// A recorded Toyota frame is "message label": the reply and the row it was asked for.
std::string ToyotaFrameMessage(const std::string& frame);
// The parameter of a Toyota reply message (characters 9-10), "" when too short.
std::string ToyotaParameter(const std::string& message);

// The rows of a Toyota parameter: one per named sub-value, in byte and bit order.
std::vector<ItemRow> ToyotaRows(const link::ToyotaDecoder& decoder, const std::string& parameter);

// The value text of a Toyota row's label ("PPaa b") in a reply message; "" for a label of no form.
std::string ToyotaRowValue(const link::ToyotaDecoder& decoder, const std::string& label, const std::string& message,
                           int kind);

// Nissan logs: a row per recorded item in the order first seen (a row per named switch of a
// block 13 register), each frame updating the rows of its identifier. The unit type is read when
// the log is shown, as opening the log sets it.
FrameHandler NissanFrameHandler(GridModel& grid, const link::NissanDecoder& decoder, std::function<int()> moduleIndex);

// Toyota logs: a row per named sub-value of each recorded parameter; a frame updates every row
// of its parameter.
FrameHandler ToyotaFrameHandler(GridModel& grid, const link::ToyotaDecoder& decoder);

} // namespace kvx::log
