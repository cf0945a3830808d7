#pragma once

#include <string>
#include <vector>

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

// The messages of a reply split at ":" (the rest after the last ":" included); none for "".
std::vector<std::string> SplitMessages(const std::string& reply);

// Characters 5-6 of a message: the unit that sent it ("" when the message is shorter).
std::string SourceAddress(const std::string& message);

} // namespace kvx::obd
