#pragma once

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// Encode, transact, decode; the three results stay in LastFrame, LastRaw and LastResponse so the
// keep-alive timer and the services see the same last exchange. Returns the decoded reply.
std::string RequestCycle(Session& session, const std::string& request);

// The same cycle for a module that keeps its last exchange apart: the three results go to frame,
// raw and response instead.
std::string RequestCycle(Session& session, const std::string& request, std::string& frame, std::string& raw,
                         std::string& response);

} // namespace kvx::obd
