#pragma once

namespace kvx {
class GridModel;
class MainScreen;
}

namespace kvx::data {

// Each clears its grid and writes the heading row.
void LayoutMonitorTestGrid(MainScreen& screen);
void LayoutO2SensorGrid(MainScreen& screen);
// Column 0 (the marker column) keeps its heading; "UNIT" heads both value columns.
void LayoutLiveDataGrid(MainScreen& screen);
void LayoutLiveDataGrid(GridModel& grid);

} // namespace kvx::data
