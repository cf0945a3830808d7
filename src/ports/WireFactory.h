#pragma once

#include "link/Clock.h"
#include "link/Wire.h"
#include "sim/VirtualVehicle.h"

#include <functional>
#include <optional>
#include <string>

namespace kvx::ports {

struct PortOptions {
    // A device path that every serial port number opens instead of the system's usual name.
    std::string device;
    sim::VehicleConfig vehicle;
    // Where the user may change cars between connections (the window's settings): asked at each
    // opening of the virtual vehicle's port for the car wanted now, which then runs with the seed
    // and the fault plan of `vehicle`. A call failure is thrown as a link::LinkError.
    std::function<sim::VehicleProfile()> chosenVehicle;
};

// Port 0 is the virtual vehicle: its K-line bus to a cable's engine, an emulated ELM327 in front of
// its units to an ELM327 engine (each one object for the factory's life, or for as long as the same
// car is chosen, so a reconnect finds the car as it left it); 1..16 are serial devices.
link::WireFactory makeWireFactory(link::Clock& clock, PortOptions options = {});

// kvx's --port: "sim", a port number or a device path. Sets device for a path; nullopt when the
// text is none of the three.
std::optional<int> parsePortArgument(const std::string& text, PortOptions& options);

} // namespace kvx::ports
