#pragma once

#include <functional>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// Runs one user command. A LinkError from the link ends it: the session is closed when the port
// or cable failed, and the error's text is shown in a "Failed Communication" box. Returns false
// when the command was ended so.
bool RunLinkCommand(Session& session, const std::function<void()>& command);

} // namespace kvx::obd
