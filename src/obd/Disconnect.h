#pragma once

namespace kvx {
struct Session;
}

namespace kvx::obd {

inline constexpr const char* kDisconnectToExit = "DISCONNECT TO EXIT";
inline constexpr const char* kStopPlayingLog = "STOP PLAYING LOG";

// Ends the session: a running recording finished, session-only controls off, keep-alive timers
// stopped, counters cleared, the port closed, "Try All" restored, the toolbar back in its
// not-connected state, the unit's readings off the screen. Safe to run twice; start-up runs it
// too, so the window starts in the state a Disconnect leaves.
void Disconnect(Session& session);

// The main window's close check. Refuses (false, with the reason in the status bar) while a log
// plays or a unit is connected; otherwise finishes the log file, saves the P3 delay and returns
// true so the window may close.
bool QueryClose(Session& session);

} // namespace kvx::obd
