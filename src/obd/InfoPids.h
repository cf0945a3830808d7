#pragma once

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// The service 01 parameter behind each cmdModeOnce button ("" for the button that does nothing).
std::string InfoPidOfButton(int index);

// A click on cmdModeOnce(index): one read into txtInfo, with the keep-alive timer off meanwhile.
void ClickModeOnce(Session& session, int index);

// One request and its reading in txtInfo. A service 01 parameter the unit did not declare is
// answered "Not Supported" without asking.
void RequestInfoPid(Session& session, const std::string& headerByte1, const std::string& headerByte2,
                    const std::string& service, const std::string& pid);

// Reads the vehicle identification number (service 09) into txtInfo, when the unit offers it.
void ReadVehicleId(Session& session);

} // namespace kvx::obd
