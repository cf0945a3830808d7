#pragma once

#include <string>

namespace kvx::link::decode {

// A number with a fixed count of decimals, rounded half away from zero, never "-0".
std::string fixed(double value, int decimals);

// "1726 rpm", or the bare number when the unit text is empty.
std::string withUnit(double value, int decimals, const char* unit);

} // namespace kvx::link::decode
