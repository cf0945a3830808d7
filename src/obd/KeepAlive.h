#pragma once

#include <functional>
#include <string>

namespace kvx {
struct Session;
class TimerModel;
}

namespace kvx::obd {

inline constexpr const char* kNoCommunication = "No Communication";
inline constexpr const char* kNoResponseFromEcu = "No Response From ECU";
inline constexpr const char* kReconnecting = "RECONNECTING...";

// Silent keep-alive ticks before each tick starts with a new wake-up, and the count that ends
// the session.
inline constexpr int kKeepAliveReconnectFrom = 3;
inline constexpr int kKeepAliveGiveUpAt = 14;

// Before the next request after repeated silence (3 to 13 silent replies): a new wake-up. A good
// wake-up clears panel 1; a failed one counts as one more silent reply.
void WakeUpAfterSilence(Session& session, const std::function<bool()>& wakeUp);

// The start of a keep-alive tick: the same, with the module's timer off during the wake-up.
void WakeUpAfterSilence(Session& session, TimerModel& timer, const std::function<bool()>& wakeUp);

// The generic module's wake-up after silence: "RECONNECTING..." and a new wake-up with the
// settings. True when the unit answered.
bool ReconnectAfterSilence(Session& session);

// The keep-alive exchange with panel 3's activity lamp lit: the request is framed and sent, and
// the raw reply returned (both kept in LastFrame and LastRaw); no decoding.
std::string LampedExchange(Session& session, const std::string& request);

// The end of a session that stopped answering: disconnect, then "No Response From ECU".
void DropSilentSession(Session& session);

// A keep-alive timer on again at the settings' interval.
void ArmKeepAlive(Session& session, TimerModel& timer);

// tmrKeepAlive on again at the settings' interval, after a service pass.
void RestartKeepAlive(Session& session);

// One tick of tmrKeepAlive: a wake-up after repeated silence, the end of the session after long
// silence, otherwise the "01" "00" keep-alive request with its silence counting. Does nothing
// while a service loop is running (Busy).
void KeepAliveTick(Session& session);

} // namespace kvx::obd
