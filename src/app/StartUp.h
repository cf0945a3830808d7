#pragma once

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::app {

// The main window's load: the year and sensor lists, the settings (pushed into the link), the
// grid layouts and the tabs of the generic module, and last the trouble-code descriptions from
// the program folder with their count in the status bar; the session starts disconnected. With
// virtualVehicle the port is the virtual vehicle for this run only, on `car` (a garage name or a
// profile file; empty: the built-in car), and nothing is saved.
void StartSession(Session& session, bool virtualVehicle, const std::string& programFolder,
                  const std::string& car = {});

inline constexpr const char* kVirtualVehicleText = "VIRTUAL VEHICLE";

// Labels the window when the port in force is the virtual vehicle, so a simulated car is never
// taken for a real one. Run whenever the port may have changed while no session stands.
void ShowPortInForce(Session& session);

} // namespace kvx::app
