#pragma once

namespace kvx {
struct Session;
}

namespace kvx::obd {

inline constexpr const char* kNoCommunication = "No Communication";
inline constexpr const char* kNoResponseFromEcu = "No Response From ECU";
inline constexpr const char* kReconnecting = "RECONNECTING...";

// Silent keep-alive ticks before each tick starts with a new wake-up, and the count that ends
// the session.
inline constexpr int kKeepAliveReconnectFrom = 3;
inline constexpr int kKeepAliveGiveUpAt = 14;

// tmrKeepAlive on again at the settings' interval, after a service pass.
void RestartKeepAlive(Session& session);

// One tick of tmrKeepAlive: a wake-up after repeated silence, the end of the session after long
// silence, otherwise the "01" "00" keep-alive request with its silence counting. Does nothing
// while a service loop is running (Busy).
void KeepAliveTick(Session& session);

} // namespace kvx::obd
