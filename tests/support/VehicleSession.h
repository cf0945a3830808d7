#pragma once

#include "link/Clock.h"
#include "link/LinkSession.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "sim/VirtualVehicle.h"
#include "support/RecordingShell.h"
#include "support/TempSettings.h"

#include <string>

namespace kvx::test {

// A session on the virtual vehicle in virtual time, its settings loaded as at start-up for the
// vehicle's port and ISO 9141-2, woken and talking to the engine unit (10) as the generic module
// does after connecting.
struct VehicleSession {
    TempSettings store;
    link::VirtualClock clock;
    sim::VirtualVehicle vehicle{clock};
    link::LinkSession link{[this](int) { return vehicle.makeWire(); }, clock};
    MainScreen screen;
    RecordingShell shell;
    Session session{link, screen, shell};

    VehicleSession()
    {
        store.put("Port", std::to_string(kVirtualVehiclePort).c_str());
        store.put("TypeProtocol", std::to_string(link::Iso9141Slow).c_str());
        settings::LoadCommSettings(session);
    }

    bool connect()
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
};

} // namespace kvx::test
