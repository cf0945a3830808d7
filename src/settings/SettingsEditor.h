#pragma once

#include "session/ControlModels.h"

#include <string>
#include <vector>

namespace kvx {
struct Session;
}

namespace kvx::settings {

inline constexpr const char* kInterfaceName = "OptoCoupler/Tactrix/KKL";
inline constexpr const char* kElm327InterfaceName = "ELM327";
// The adapter rate entry that lets the link try the usual rates.
inline constexpr const char* kAutoBaudEntry = "Auto-detect";
// The port entries that name the virtual vehicle, after the serial ports "1" to "16": its K-line
// for the cable, and an emulated ELM327 in front of it. Both are port 0; the interface tells them
// apart, so choosing one chooses its interface too.
inline constexpr const char* kVirtualVehicleEntry = "Virtual Vehicle";
inline constexpr const char* kVirtualAdapterEntry = "Virtual Vehicle (ELM327)";
inline constexpr int kP3Cap = 500;

// The protocol list of the dialog: index + 1 is the protocol number. The CAN entries follow
// "Try All" and need the ELM327 interface.
const std::vector<std::string>& ProtocolNames();

// The settings dialog without widgets: its fields as text models, its change handlers and its
// buttons. frmSetting renders the models and calls the handlers; tests drive it directly.
class SettingsEditor {
public:
    explicit SettingsEditor(Session& session);

    TextModel txtBaud, txtKeepAlive, txtP4, txtKwp2000InitDelay, txtInterbyte, txtP3;
    ListModel cmbInterface, cmbTypeProtocol, cmbPort, cmbAdapterBaud;
    // The cars of the garage beside the port list, usable while the port is the virtual vehicle.
    ListModel cmbVehicle;
    ControlState cmbVehicleState;
    ControlState cmdApply;

    // Fills the lists and shows the session's settings; Apply starts disabled.
    void Form_Load();

    // The user typed into a text field: the text is kept and Apply enabled; txtP3 also caps its
    // value at 500.
    void edit(TextModel& field, const std::string& text);
    // The user chose a list entry (index into its items): Apply enabled. A virtual vehicle entry
    // chooses its interface and an interface the matching virtual vehicle entry. A port chosen here is
    // the one Apply saves, even in a run the command line put on the virtual vehicle; a car is
    // saved only when chosen here, so a car the command line gave this run stays out of the store.
    void choose(ListModel& list, int index);

    // Takes the fields into the settings, pushes them to the link and the main window and saves
    // them. A field that is not a number, or not one its field holds (a keep-alive period below
    // the timers' shortest included), or a CAN protocol with the K-line cable, refuses the whole
    // Apply with a box naming it; false then.
    bool cmdApply_Click();
    // The DEFAULT set (the port kept), applied and saved at once.
    bool cmdDefault_Click();
    // Discards unapplied edits: the fields show the settings in force again.
    void cmdClose_Click();

private:
    void txtP3_Change();
    void fillVehicleList();
    bool virtualPortChosen() const;

    Session& session_;
    bool vehicleChosen_ = false;
};

} // namespace kvx::settings
