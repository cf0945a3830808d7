#pragma once

#include "log/ReplayFrames.h"

#include <functional>
#include <string>

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

// A recorded Toyota frame is "message label": the reply and the row it was asked for.
std::string ToyotaFrameMessage(const std::string& frame);
// The parameter of a Toyota reply message (the first byte after the service), "" when it has none.
std::string ToyotaParameter(const std::string& message);

// Nissan logs: a row per recorded item in the order first seen (a row per named switch of a
// block 13 register), each frame updating the rows of its identifier. The unit type is read when
// the log is shown, as opening the log sets it.
FrameHandler NissanFrameHandler(GridModel& grid, const link::NissanDecoder& decoder, std::function<int()> moduleIndex);

// Toyota logs: a row per named sub-value of each recorded parameter; a frame updates every row
// of its parameter.
FrameHandler ToyotaFrameHandler(GridModel& grid, const link::ToyotaDecoder& decoder);

} // namespace kvx::log
