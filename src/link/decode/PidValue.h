#pragma once

#include "link/decode/PidTable.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kvx::link::decode {

// Selector 1 gives the metric text with its unit, 2 the US customary text. Parameters without a
// unit give their facts in two parts (an oxygen sensor's voltage, then its trim); enumerations
// give the same text for both. Each text fits a 20-character column.
enum Selector : int { Metric = 1, Customary = 2 };

// A metric quantity in the selected unit system: "90 °C" or "194 °F".
std::string quantity(double metric, int decimals, Unit unit, int selector);

// The value text of a parameter from its data bytes; "" for an unknown parameter, a short data
// span or a selector other than 1 and 2.
std::string pidValueText(int pid, const std::uint8_t* data, std::size_t size, int selector);

// The description of a parameter given as two hex digits. The layout text ("13", "1D" or "")
// tells which sensor positions PIDs 14-1B, 24-2B and 34-3B stand for; "" for an unknown number.
std::string describePid(std::string_view pid, std::string_view o2Layout);

// A service 41 message: header, 41, PID, data, checksum.
std::string formatLiveValue(std::string_view message, int selector);
// A service 42 message: header, 42, PID, frame number, data, checksum.
std::string formatFreezeFrameValue(std::string_view message, int selector);

} // namespace kvx::link::decode
