#include "app/StartUp.h"

#include "data/GridLayouts.h"
#include "data/TabLayout.h"
#include "data/VehicleLists.h"
#include "obd/Connection.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "settings/SettingsStore.h"

namespace kvx::app {

void StartSession(Session& session, bool virtualVehicle)
{
    MainScreen& screen = session.screen;
    data::FillYearList(screen);
    settings::LoadCommSettings(session);
    if (virtualVehicle)
        session.settings.PortNumber = kVirtualVehiclePort;
    data::LayoutLiveDataGrid(screen);
    data::LayoutO2SensorGrid(screen);
    data::LayoutMonitorTestGrid(screen);
    data::BuildTabs(screen, data::ModuleTabs(ModuleGeneric));
    obd::SetToolbarConnected(session, false);
}

} // namespace kvx::app
