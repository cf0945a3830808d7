#pragma once

#include <string>

namespace kvx::obd {

// The sensor number of a name in cmbMode5 ("" for a name not in the table). Both sensor layouts
// share the table; the two-bank names come first, so a Bank 2 sensor is always 05 to 08.
std::string O2SensorNumber(const std::string& sensorName);

// The standard title of a service 05 test ("" beyond the standard ones).
std::string O2TestDescription(int tid);

} // namespace kvx::obd
