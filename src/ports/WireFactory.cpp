#include "ports/WireFactory.h"

#include "link/SerialWire.h"
#include "session/CommSettings.h"

#include <memory>

namespace kvx::ports {

namespace {

constexpr int kLastSerialPort = 16;

// The vehicle a factory has made, and the car it was made from when the car was chosen.
struct OnTheBus {
    std::unique_ptr<sim::VirtualVehicle> vehicle;
    std::optional<sim::VehicleProfile> car;
};

sim::VirtualVehicle& vehicleFor(link::Clock& clock, const PortOptions& options, OnTheBus& bus)
{
    if (!options.chosenVehicle) {
        if (!bus.vehicle)
            bus.vehicle = std::make_unique<sim::VirtualVehicle>(clock, options.vehicle);
        return *bus.vehicle;
    }
    sim::VehicleProfile car = options.chosenVehicle();
    if (!bus.vehicle || car != bus.car) {
        sim::VehicleConfig config = sim::configFor(car, options.vehicle.seed);
        config.faults = options.vehicle.faults;
        bus.vehicle = std::make_unique<sim::VirtualVehicle>(clock, std::move(config));
        bus.car = std::move(car);
    }
    return *bus.vehicle;
}

} // namespace

link::WireFactory makeWireFactory(link::Clock& clock, PortOptions options)
{
    auto bus = std::make_shared<OnTheBus>();
    return [&clock, options, bus](int port) -> std::unique_ptr<link::Wire> {
        if (port == kVirtualVehiclePort)
            return vehicleFor(clock, options, *bus).makeWire();
        if (!options.device.empty())
            return link::makeSerialWire(options.device, clock);
        if (port < 1 || port > kLastSerialPort)
            return nullptr;
        return link::makeSerialWire(link::serialDeviceForPort(port), clock);
    };
}

std::optional<int> parsePortArgument(const std::string& text, PortOptions& options)
{
    if (text == "sim")
        return kVirtualVehiclePort;
    if (!text.empty() && text.find_first_not_of("0123456789") == std::string::npos) {
        const int n = std::stoi(text.substr(0, 3));
        if (n >= 1 && n <= kLastSerialPort)
            return n;
        return std::nullopt;
    }
    if (text.find('/') != std::string::npos || text.rfind("COM", 0) == 0) {
        options.device = text;
        return 1;
    }
    return std::nullopt;
}

} // namespace kvx::ports
