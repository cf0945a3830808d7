#pragma once

namespace kvx {
class MainScreen;
}

namespace kvx::data {

// cmbYear at start-up: "None" and "1997", showing "None".
void FillYearList(MainScreen& screen);

// After a choice in cmbYear: refills cmbMake for the year shown ("Acura" for 1997 only).
void FillMakeList(MainScreen& screen);

} // namespace kvx::data
