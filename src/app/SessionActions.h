#pragma once

#include "app/MainActions.h"

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::app {

// The main window's controls bound to the session's routines. Every call that talks to the
// vehicle runs through the command guard, so a link fault ends the command with a box. Also
// lets the window breathe during the link's long waits. Recordings go to the Log folder of
// programFolder.
MainActions BindSessionActions(Session& session, const std::string& programFolder);

} // namespace kvx::app
