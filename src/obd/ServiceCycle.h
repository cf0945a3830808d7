#pragma once

#include "obd/FrameText.h"

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// One request cycle: encode, transact, decode; the three results stay in the session so the
// keep-alive timer and the services see the same last exchange. Returns the decoded reply.
std::string RunRequestCycle(Session& session, const std::string& request);

// The generic services run only with the generic module chosen and the port open.
bool GenericServiceAllowed(const Session& session);

// A service pass owns the link: no keep-alive request may fall between its requests.
void PauseKeepAlive(Session& session);
// After the pass the timer runs again at the settings' interval.
void ResumeKeepAlive(Session& session);

} // namespace kvx::obd
