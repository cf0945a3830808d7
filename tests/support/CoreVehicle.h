#pragma once

#include "data/TabLayout.h"
#include "link/Clock.h"
#include "link/LinkSession.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "sim/VirtualVehicle.h"
#include "support/RecordingShell.h"
#include "support/TempSettings.h"

#include <QObject>
#include <string>
#include <vector>

namespace kvx::test {

// The virtual vehicle, silent at these wake-ups (counted from 0).
inline sim::VehicleConfig silentWakeUps(std::initializer_list<int> numbers)
{
    sim::VehicleConfig config;
    for (int n : numbers)
        config.faults.wakeUps[n] = sim::Fault::Silence;
    return config;
}

// A main screen and session on the virtual vehicle in virtual time, every tab present and
// "LIVE DATA" selected, the settings loaded as at start-up from a store holding the vehicle's port
// and the protocol. Panel 1's texts are kept in order.
struct CoreVehicle {
    explicit CoreVehicle(sim::VehicleConfig config = {}, int protocol = link::Iso9141Slow)
        : vehicle(clock, std::move(config))
    {
        store.put("Port", std::to_string(kVirtualVehiclePort).c_str());
        store.put("TypeProtocol", std::to_string(protocol).c_str());
        settings::LoadCommSettings(session);
        data::BuildTabs(screen, data::ModuleTabs(ModuleGeneric));
        QObject::connect(&screen.StatusBar1, &StatusBarModel::changed, [this](int panel) {
            if (panel == 1)
                statusTexts.push_back(screen.StatusBar1.text(1));
        });
    }

    int countStatus(const std::string& text) const
    {
        int n = 0;
        for (const auto& t : statusTexts)
            n += t == text;
        return n;
    }

    // Cuts GridMode1 down to the ticked row of this parameter; false when there is no such row.
    bool pollOnly(const std::string& pid)
    {
        GridModel& grid = screen.GridMode1;
        for (int row = 1; row < grid.rows(); ++row) {
            if (grid.text(row, 1) != pid)
                continue;
            for (int col = 0; col < grid.cols(); ++col)
                grid.setCell(1, col, grid.cell(row, col));
            grid.setRows(2);
            return true;
        }
        return false;
    }

    void untickAll()
    {
        for (int row = 1; row < screen.GridMode1.rows(); ++row)
            screen.GridMode1.setText(row, 0, "q");
    }

    // Long enough without a request that the units give their session up.
    void outwaitSession() { clock.sleepFor(link::ms(6000)); }

    // Wakes the engine unit (10) and talks to it as the generic module does after connecting,
    // without the discovery of its parameters.
    bool wake()
    {
        std::string result;
        const auto& s = session.settings;
        if (!link.InitializeEcu("33", s.BaudRate, s.PortNumber, s.ProtocolNumber, "", false, result))
            return false;
        session.ModuleIndex = ModuleGeneric;
        session.LinkDown = false;
        session.HeaderByte1 = "68";
        session.HeaderByte2 = "6A";
        session.EcuAddress = "10";
        return true;
    }

    // The three results of the last exchange; unchanged when a routine sent nothing.
    std::string lastExchange() const { return session.LastFrame + "|" + session.LastRaw + "|" + session.LastResponse; }

    TempSettings store;
    link::VirtualClock clock;
    sim::VirtualVehicle vehicle;
    link::LinkSession link{[this](int, link::InterfaceType) { return vehicle.makeWire(); }, clock};
    MainScreen screen;
    RecordingShell shell;
    Session session{link, screen, shell};
    std::vector<std::string> statusTexts;
};

} // namespace kvx::test
