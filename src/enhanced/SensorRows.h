#pragma once

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::enhanced {

// Appends a ticked GridMode1 row for a manufacturer item (row `count` + 1 after counting it) and
// shows the running count as "ADDING SENSORS n".
void AddSensorRow(Session& session, int& count, const std::string& identifier, const std::string& name);

// Moves the polling highlight of column 0 to the row: the row highlighted before goes back to
// the default colour; this one turns red while recording and green otherwise.
void HighlightPolledRow(Session& session, int row);

} // namespace kvx::enhanced
