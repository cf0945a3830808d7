#pragma once

namespace kvx {
struct Session;
}

namespace kvx::app {

// The main window's load, before it is shown: the year list, the settings (pushed into the link),
// the grid layouts and the tabs of the generic module; the session starts disconnected. With
// virtualVehicle the port is the virtual vehicle for this run only (nothing is saved).
void StartSession(Session& session, bool virtualVehicle);

} // namespace kvx::app
