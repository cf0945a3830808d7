#include "data/VehicleLists.h"

#include "session/MainScreen.h"

namespace kvx::data {

void FillYearList(MainScreen& screen)
{
    screen.cmbYear.clear();
    screen.cmbYear.addItem("None");
    screen.cmbYear.addItem("1997");
    screen.cmbYear.setCurrentIndex(0);
}

void FillMakeList(MainScreen& screen)
{
    screen.cmbMake.clear();
    if (screen.cmbYear.text() == "1997")
        screen.cmbMake.addItem("Acura");
}

} // namespace kvx::data
