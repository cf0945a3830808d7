#pragma once

#include "app/MainActions.h"
#include "garage/ProgramFolders.h"

namespace kvx {
struct Session;
}

namespace kvx::app {

// The main window's controls bound to the session's routines. Every control runs through the
// general fault report, so any fault ends its command with a box and the session usable. Also
// lets the window breathe during the link's long waits. Recordings go to the folders' Log folder.
MainActions BindSessionActions(Session& session, const garage::ProgramFolders& folders);

} // namespace kvx::app
