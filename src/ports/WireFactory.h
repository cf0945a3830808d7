#pragma once

#include "link/Clock.h"
#include "link/Wire.h"
#include "sim/VirtualVehicle.h"

#include <optional>
#include <string>

namespace kvx::ports {

struct PortOptions {
    // A device path that every serial port number opens instead of the system's usual name.
    std::string device;
    sim::VehicleConfig vehicle;
};

// Port 0 is the virtual vehicle (one vehicle for the factory's life, so a reconnect finds the
// same car); 1..16 are serial devices.
link::WireFactory makeWireFactory(link::Clock& clock, PortOptions options = {});

// kvx's --port: "sim", a port number or a device path. Sets device for a path; nullopt when the
// text is none of the three.
std::optional<int> parsePortArgument(const std::string& text, PortOptions& options);

} // namespace kvx::ports
