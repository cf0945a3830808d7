#pragma once

#include "log/ReplayFrames.h"

#include <functional>

namespace kvx {
class GridModel;
}
namespace kvx::link {
class NissanDecoder;
class ToyotaDecoder;
}

namespace kvx::log {

// The identifier of a recorded Nissan reply "LL 62 II II ..": characters 5-8, "" for a negative,
// empty or short reply.
std::string NissanFrameIdentifier(const std::string& frame);

// Nissan logs: a row per recorded item in the order first seen (a row per named switch of a
// block 13 register), each frame updating the rows of its identifier. The unit type is read when
// the log is shown, as opening the log sets it.
FrameHandler NissanFrameHandler(GridModel& grid, const link::NissanDecoder& decoder, std::function<int()> moduleIndex);

// Toyota logs hold "message row": the reply and the grid row it was asked for. A row per named
// sub-value of each recorded parameter; a frame updates every row of its parameter.
FrameHandler ToyotaFrameHandler(GridModel& grid, const link::ToyotaDecoder& decoder);

} // namespace kvx::log
