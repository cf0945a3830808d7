#include "enhanced/SensorRows.h"

#include "data/GridLayouts.h"
#include "session/MainScreen.h"
#include "session/Session.h"

namespace kvx::enhanced {

void AddSensorRow(Session& session, int& count, const std::string& identifier, const std::string& name)
{
    GridModel& grid = session.screen.GridMode1;
    ++count;
    grid.setRows(count + 1);
    grid.setCell(count, data::MarkerColumn, data::MarkerCell(data::kTickedMarker));
    session.screen.StatusBar1.setText(1, "ADDING SENSORS " + std::to_string(count));
    grid.setText(count, data::PidColumn, identifier);
    grid.setText(count, data::DescriptionColumn, name);
}

void HighlightPolledRow(Session& session, int row)
{
    GridModel& grid = session.screen.GridMode1;
    if (session.NissanHighlightRow > 0 && session.NissanHighlightRow < grid.rows())
        grid.setColor(session.NissanHighlightRow, data::MarkerColumn, kBlack);
    grid.setColor(row, data::MarkerColumn, session.Logging ? kRed : kGreen);
    session.NissanHighlightRow = row;
}

} // namespace kvx::enhanced
