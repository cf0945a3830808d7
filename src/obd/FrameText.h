#pragma once

#include <string>
#include <vector>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// True for a message from the engine unit in use; messages of other units are not shown.
bool FromEcu(const Session& session, const std::string& message);

// The messages of a reply that come from the engine unit in use, in the order they came.
std::vector<std::string> EcuMessages(const Session& session, const std::string& reply);

} // namespace kvx::obd
