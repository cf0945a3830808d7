#include "app/StartUp.h"

#include "app/VehicleChoice.h"
#include "data/DtcDescriptions.h"
#include "data/GridLayouts.h"
#include "data/TabLayout.h"
#include "data/VehicleLists.h"
#include "obd/Disconnect.h"
#include "obd/O2SensorList.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "settings/SettingsStore.h"

namespace kvx::app {

void StartSession(Session& session, bool virtualVehicle, const std::string& programFolder, const std::string& car)
{
    MainScreen& screen = session.screen;
    data::FillYearList(screen);
    data::FillMakeList(screen);
    screen.cmbFrame.clear();
    screen.cmbFrame.addItem("00");
    screen.cmbFrame.setCurrentIndex(0);
    obd::FillO2SensorList(session);
    settings::LoadCommSettings(session);
    if (virtualVehicle) {
        session.StorePortNumber = session.settings.PortNumber;
        session.settings.PortNumber = kVirtualVehiclePort;
        session.settings.VirtualVehicle = car;
    }
    CheckVehicleInForce(session);
    // Only an ELM327 reaches a CAN car: the car named for this run brings the adapter with it.
    if (virtualVehicle && session.settings.Interface != kElm327Interface &&
        VehicleInForce(session.settings).bus != sim::Bus::KLine) {
        session.StoreInterface = session.settings.Interface;
        session.settings.Interface = kElm327Interface;
        settings::PushInterface(session);
    }
    data::LayoutLiveDataGrid(screen);
    data::LayoutO2SensorGrid(screen);
    data::LayoutMonitorTestGrid(screen);
    data::BuildTabs(screen, data::ModuleTabs(ModuleGeneric));
    obd::Disconnect(session);
    ShowPortInForce(session);
    // A missing or damaged file has shown its box by now; the count says how far it got.
    const int count = data::LoadDtcDescriptions(programFolder, session.DtcDescriptions, session.shell);
    screen.StatusBar1.setText(4, data::DtcLoadedText(count));
}

void ShowPortInForce(Session& session)
{
    const bool simulated = session.settings.PortNumber == kVirtualVehiclePort;
    session.screen.lblVirtualVehicle.setText(simulated ? kVirtualVehicleText : "");
}

} // namespace kvx::app
