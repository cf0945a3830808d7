#pragma once

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// The "MONITORING TEST" tab's button: learns the supported tests, then reads them.
void RequestMonitorTests(Session& session);

// Asks every supported service 06 test and adds one gridMode6 row per answering component:
// TID, CID, description (only with a make chosen), limit, limit type, result, pass/fail.
void ReadMonitorTests(Session& session, const std::string& headerByte1, const std::string& headerByte2);

} // namespace kvx::obd
