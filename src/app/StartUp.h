#pragma once

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::app {

// The main window's load: the year and sensor lists, the settings (pushed into the link), the
// grid layouts and the tabs of the generic module, and last the trouble-code descriptions from
// the program folder with their count in the status bar; the session starts disconnected. With
// virtualVehicle the port is the virtual vehicle for this run only (nothing is saved).
void StartSession(Session& session, bool virtualVehicle, const std::string& programFolder);

} // namespace kvx::app
