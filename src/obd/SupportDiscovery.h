#pragma once

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// Asks the engine unit which identifiers a service supports, 32 at a time ("00", "20", ...),
// and marks them in SupportedPids' column for the service (service - 1). The next range is asked
// only when the last identifier of the one before came back supported. `suffix` follows the
// range identifier in each request (the frame number of service 02, the sensor of service 05).
// Entries 0 to lastId of the column are cleared first.
void DiscoverSupport(Session& session, int service, const std::string& suffix, int lastRange, int lastId);

} // namespace kvx::obd
