#pragma once

#include "session/ControlModels.h"
#include "session/GridModel.h"
#include "session/RichTextModel.h"
#include "session/StatusBarModel.h"
#include "session/TabStripModel.h"

#include <array>
#include <map>
#include <memory>
#include <string>

namespace kvx {

// Everything of frmMain that the services write, as models named after the window's controls.
class MainScreen {
public:
    MainScreen();

    GridModel GridMode1{"GridMode1", 5};
    GridModel gridMode5{"gridMode5", 5};
    GridModel gridMode6{"gridMode6", 7};
    RichTextModel txtMode2{"txtMode2"};
    RichTextModel txtMode347{"txtMode347"};
    RichTextModel txtInfo{"txtInfo"};
    StatusBarModel StatusBar1;
    TabStripModel TabStrip1;

    ListModel cmbModule, cmbFrame, cmbMode5, cmbMake, cmbYear;
    std::array<ListModel, 5> cmbPid;
    std::array<TextModel, 5> lblPid, lblPida;
    TextModel lblSpeed;
    // "VIRTUAL VEHICLE" while the port in force is the simulator, empty otherwise: the window
    // shows it in its title and a status panel of its own.
    TextModel lblVirtualVehicle;
    // The P3 delay slider, as far as the settings dialog lets P3 go.
    SliderModel sldSpeedP3{0, 500};

    TimerModel tmrKeepAlive, tmrKeepAliveEnhance, tmrTracker;

    // Enabled / visible / checked state of a named control ("chkLog", "Connect", "cmdGo",
    // "frmMain" for the whole window, ...); made on first use.
    ControlState& control(const std::string& name);

private:
    std::map<std::string, std::unique_ptr<ControlState>> controls_;
};

} // namespace kvx
