#pragma once

#include <string>

namespace kvx::link {

// Names and values of the Toyota engine unit's service 01 parameters above 0xB0. A sub-value is
// addressed by a, the data byte it starts at (1 = the first byte after the parameter), and b:
// 0 for the value of the byte(s) from a, 1-8 for bit b-1 of byte a as a switch.
class ToyotaDecoder {
public:
    // The display name of parameter (two hex digits) a, b; "" for an unused slot.
    std::string SensorName(const std::string& parameter, int a, int b) const;

    // The display text of sub-value a, b of one reply message "48 6B 10 41 PP data.. CS" (the
    // parameter is read from the message itself): kind 1 metric, kind 2 US. An empty, short or
    // negative message gives "".
    std::string SensorValue(int a, int b, const std::string& reply, int kind) const;
};

} // namespace kvx::link
