#pragma once

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::obd {

inline constexpr const char* kLiveDataCaption = "LIVE DATA";
// Silent replies in a row that start reconnection attempts, and that end live data.
inline constexpr int kLiveReconnectFrom = 3;
inline constexpr int kLiveGiveUpAt = 6;

// cmdRequestMode1: polls the ticked rows while "LIVE DATA" is the selected tab, Busy is set and
// the link is up; the keep-alive timer runs only between passes.
void StartLiveData(Session& session);

// One pass over GridMode1's ticked rows. False when six silent replies ended live data (the box
// has been shown); true otherwise.
bool PollLiveData(Session& session, const std::string& headerByte1, const std::string& headerByte2);

// cmdStop: the running loop ends at its next row.
void StopLiveData(Session& session);

// A click on a row of GridMode1: toggles its marker while no loop runs; unticking blanks the
// row's values.
void ToggleLiveDataRow(Session& session, int row);

// Ticks (or unticks, blanking their values) every row of GridMode1 at once, under the same rule
// as a click on one row: nothing changes while a loop runs.
void TickAllLiveDataRows(Session& session, bool ticked);

// The heading's click: unticks every row when all are ticked, and ticks them all otherwise.
void ToggleAllLiveDataRows(Session& session);

// Rebuilds GridMode1 from SupportedPids: one ticked row per supported parameter of service 01
// (the support bitmaps themselves excepted), described by the link.
void BuildLiveDataGrid(Session& session);

// Fills the five cmbPid lists of the combo view with "OFF" and "PP - description" per
// supported parameter, showing "OFF".
void FillPidLists(Session& session);

// cmdGo: asks for the support bitmaps again and rebuilds the grid and the combo lists.
void RediscoverSupportedPids(Session& session);

} // namespace kvx::obd
