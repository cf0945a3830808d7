#pragma once

#include <functional>

namespace kvx {
struct Session;
}

namespace kvx::obd {

inline constexpr const char* kProgramFault = "Error";

// Runs one user command. A LinkError from the link ends it: the session is closed when the port
// or cable failed, and the error's text is shown in a "Failed Communication" box; false then.
// Any other fault passes on to the caller with the session settled first: Busy cleared and a
// running recording finished with the frames written so far, whoever reports the fault.
bool RunLinkCommand(Session& session, const std::function<void()>& command);

// Runs a connection routine. Whatever ends it half made, the disconnect routine closes the
// session again; a LinkError is then shown as RunLinkCommand shows it (false), any other fault
// passes on.
bool RunConnection(Session& session, const std::function<bool()>& connect);

// The program's general fault report, which the window runs every command through. Link faults
// end the command as RunLinkCommand ends them; any other fault ends it with an "Error" box in
// plain words, and the session stays usable: nothing marked running, the recording finished, the
// module's keep-alive timer running again while a unit is connected. False when the command was
// ended so.
bool RunCommand(Session& session, const std::function<void()>& command);

} // namespace kvx::obd
