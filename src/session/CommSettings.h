#pragma once

#include <string>

namespace kvx {

// The communication settings; field names follow the settings-store keys.
struct CommSettings {
    int BaudRate = 10400;
    int PortNumber = 1; // key "Port"; 0 is the virtual vehicle
    int KeepAlive = 500;
    int P3Delay = 300;
    int P4Delay = 25;
    int InterByteDelay = 10;
    int ProtocolNumber = 4; // key "TypeProtocol"
    bool TryAllProtocols = true; // not stored; follows ProtocolNumber 4
    std::string Kwp2000InitDelay = "22";
    // The car the virtual vehicle port opens onto: a garage name or a profile file; empty, the
    // built-in car. Saved by itself, and only when the user picks a car in the dialog.
    std::string VirtualVehicle;
    int Interface = 0;        // key "Interface": 0 the K-line cable, 1 an ELM327 adapter
    int AdapterBaud = 38400;  // key "AdapterBaud": the ELM327's serial rate, 0 to find it
};

// The settings' Interface values.
constexpr int kKLineCableInterface = 0;
constexpr int kElm327Interface = 1;

// The settings' port number that names the virtual vehicle rather than a serial device.
constexpr int kVirtualVehiclePort = 0;

// The shortest keep-alive period the timers accept: below it a tick follows the last one before
// the unit can have answered, and the ticks run back to back with the window starved of events.
constexpr int kMinKeepAliveMs = 100;

} // namespace kvx
