#include "obd/Readings.h"

#include "data/GridLayouts.h"
#include "session/MainScreen.h"
#include "session/Session.h"

namespace kvx::obd {

void ClearReadings(Session& session)
{
    MainScreen& screen = session.screen;
    GridModel& grid = screen.GridMode1;
    for (int row = 1; row < grid.rows(); ++row) {
        for (int col : {data::ValueColumn, data::AltValueColumn})
            if (col < grid.cols() && !grid.text(row, col).empty())
                grid.setText(row, col, "");
        if (grid.cell(row, data::MarkerColumn).color != kBlack)
            grid.setColor(row, data::MarkerColumn, kBlack);
    }
    session.NissanHighlightRow = 0;
    for (std::size_t slot = 0; slot < screen.lblPid.size(); ++slot) {
        screen.lblPid[slot].setText("");
        screen.lblPida[slot].setText("");
    }
    for (RichTextModel* box : {&screen.txtMode2, &screen.txtMode347, &screen.txtInfo})
        box->clear();
    for (GridModel* results : {&screen.gridMode5, &screen.gridMode6})
        results->setRows(1);
}

} // namespace kvx::obd
