#pragma once

#include "link/LinkSession.h"

#include <string>
#include <string_view>

namespace kvx::link::decode {

// Service 05: which of the reply's three numbers to show.
enum OxygenSelector : int { TestValue = 1, TestMinimum = 2, TestMaximum = 3 };

// A service 45 message: header, 45, TID, sensor number, value, minimum, maximum, checksum.
// The numbers are scaled as the TID says; "" when the asked number is missing.
std::string formatOxygenTest(std::string_view message, int selector);
// The standard name of an oxygen-sensor test; "" for TIDs the manufacturer defines.
std::string oxygenTestName(int tid);

// A service 46 message in the older K-line form: header, 46, TID, component byte (bit 7 the limit
// type), value (2 bytes), limit (2 bytes), checksum. Every field empty when the message is short.
MonitorTestTexts formatMonitorTest(std::string_view message);

} // namespace kvx::link::decode
