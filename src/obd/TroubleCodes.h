#pragma once

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// Buttons of the "READ/CLEAR FAULTS" tab. Each acts only with the generic module chosen and the
// port open; otherwise the click does nothing. Clearing asks no question first.
void RequestStoredCodes(Session& session);
void RequestPendingCodes(Session& session);
void RequestClearCodes(Session& session);

// Sends service 03 or 07 and lists every code of the engine unit's frames in txtMode347.
void ReadTroubleCodes(Session& session, const std::string& headerByte1, const std::string& headerByte2,
                      const std::string& service);
// Sends service 04 and shows the engine unit's answer in txtMode347.
void ClearTroubleCodes(Session& session, const std::string& headerByte1, const std::string& headerByte2,
                       const std::string& service);

} // namespace kvx::obd
