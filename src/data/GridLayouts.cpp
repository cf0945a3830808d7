
#include "data/GridLayouts.h"
#include "session/MainScreen.h"

#include <initializer_list>

namespace kvx::data {

namespace {

void writeHeadings(GridModel& grid, int firstCol, std::initializer_list<const char*> headings)
{
    int col = firstCol;
    for (const char* heading : headings)
        grid.setText(0, col++, heading);
}

} // namespace

void LayoutMonitorTestGrid(MainScreen& screen)
{
    screen.gridMode6.clear();
    writeHeadings(screen.gridMode6, 0, {"TID", "CID", "DESCRIPTION", "LIMIT", "TYPE", "RESULT", "PASS/FAIL"});
}

void LayoutO2SensorGrid(MainScreen& screen)
{
    screen.gridMode5.clear();
    writeHeadings(screen.gridMode5, 0, {"TID", "DESCRIPTION", "VALUE", "MIN", "MAX"});
}

void LayoutLiveDataGrid(MainScreen& screen)
{
    LayoutLiveDataGrid(screen.GridMode1);
}

void LayoutLiveDataGrid(GridModel& grid)
{
    // Clearing blanks the whole heading row; the marker column's heading is not ours to change.
    const GridCell markerHeading = grid.cell(0, 0);
    grid.clear();
    grid.setCell(0, 0, markerHeading);
    writeHeadings(grid, PidColumn, {"PID", "DESCRIPTION", "UNIT", "UNIT"});
}

GridCell MarkerCell(const char* text)
{
    return GridCell{text, kBlack, kMarkerFont, 14, true};
}

} // namespace kvx::data
