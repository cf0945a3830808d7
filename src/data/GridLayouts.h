#pragma once

#include "session/GridModel.h"

namespace kvx {
class MainScreen;
}

namespace kvx::data {

// The live grid (GridMode1, and the player's grid) by column, from 0.
enum LiveColumn : int { MarkerColumn = 0, PidColumn = 1, DescriptionColumn = 2, ValueColumn = 3, AltValueColumn = 4 };

// The row markers of the live grid, drawn in the "Wingdings" font: a ticked and an empty box.
inline constexpr const char* kTickedMarker = "\u00FE";
inline constexpr const char* kEmptyMarker = "q";
inline constexpr const char* kMarkerFont = "Wingdings";

// A marker cell of the live grid's first column (kTickedMarker or kEmptyMarker), centred.
GridCell MarkerCell(const char* text);

// Each clears its grid and writes the heading row.
void LayoutMonitorTestGrid(MainScreen& screen);
void LayoutO2SensorGrid(MainScreen& screen);
// Column 0 (the marker column) keeps its heading; "UNIT" heads both value columns.
void LayoutLiveDataGrid(MainScreen& screen);
void LayoutLiveDataGrid(GridModel& grid);

} // namespace kvx::data
