#pragma once

namespace kvx {
struct Session;
}

namespace kvx::enhanced {

// tmrKeepAliveEnhance on again at the settings' keep-alive period.
void RearmEnhancedKeepAlive(Session& session);

// One tick of tmrKeepAliveEnhance: a new wake-up from the third miss, the "052211000401"
// request with its silence counting, and the end of the session at fourteen misses.
void NissanKeepAliveTick(Session& session);

} // namespace kvx::enhanced
