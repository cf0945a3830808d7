#pragma once

namespace kvx {
struct Session;
}

namespace kvx::obd {

// Ends the session: a running recording finished, session-only controls off, keep-alive timers
// stopped, counters cleared, the port closed, "Try All" restored, the toolbar back in its
// not-connected state, the unit's readings off the screen. Safe to run twice; start-up runs it
// too, so the window starts in the state a Disconnect leaves.
void Disconnect(Session& session);

} // namespace kvx::obd
