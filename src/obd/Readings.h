#pragma once

namespace kvx {
struct Session;
}

namespace kvx::obd {

// Takes every value read from a unit off the screen: the live grid's value cells and its polling
// highlight (its rows stay), the combo view's labels, the text boxes and the result grids of the
// diagnostic tabs. Run when a session ends and before a new one starts, so nothing from an earlier
// unit or module is taken for a current reading.
void ClearReadings(Session& session);

} // namespace kvx::obd
