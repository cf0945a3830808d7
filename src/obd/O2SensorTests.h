#pragma once

#include "obd/O2SensorNames.h"

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// The "O2 SENSOR TEST" tab's button: learns the supported tests, then reads them.
void RequestO2SensorTests(Session& session);

// Asks every supported test of the sensor chosen in cmbMode5 and lists the answers in gridMode5.
void ReadO2SensorTests(Session& session, const std::string& headerByte1, const std::string& headerByte2);

} // namespace kvx::obd
