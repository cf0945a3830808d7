#include "ports/WireFactory.h"

#include "link/LinkError.h"
#include "link/SerialWire.h"
#include "session/CommSettings.h"
#include "sim/Elm327Adapter.h"

#include <memory>

namespace kvx::ports {

namespace {

constexpr int kLastSerialPort = 16;

// One face of the virtual vehicle (its bus, or an ELM327 in front of it), and the car it was made
// from when the car was chosen.
template <typename Face>
struct Built {
    std::unique_ptr<Face> face;
    std::optional<sim::VehicleProfile> car;
};

// The same object while the same car is chosen, so a reconnect finds the car as it left it.
template <typename Face>
Face& faceFor(link::Clock& clock, const PortOptions& options, Built<Face>& built)
{
    if (!options.chosenVehicle) {
        if (!built.face)
            built.face = std::make_unique<Face>(clock, options.vehicle);
        return *built.face;
    }
    sim::VehicleProfile car = options.chosenVehicle();
    if (!built.face || car != built.car) {
        sim::VehicleConfig config = sim::configFor(car, options.vehicle.seed);
        config.faults = options.vehicle.faults;
        built.face = std::make_unique<Face>(clock, std::move(config));
        built.car = std::move(car);
    }
    return *built.face;
}

struct OnTheBus {
    Built<sim::VirtualVehicle> vehicle;
    Built<sim::Elm327Adapter> adapter;
};

} // namespace

link::WireFactory makeWireFactory(link::Clock& clock, PortOptions options)
{
    auto bus = std::make_shared<OnTheBus>();
    return [&clock, options, bus](int port, link::InterfaceType interface) -> std::unique_ptr<link::Wire> {
        if (port == kVirtualVehiclePort && interface == link::InterfaceType::Elm327)
            return faceFor(clock, options, bus->adapter).makeWire();
        if (port == kVirtualVehiclePort) {
            sim::VirtualVehicle& vehicle = faceFor(clock, options, bus->vehicle);
            // A real cable would only hear silence; the virtual vehicle can say why.
            if (vehicle.bus() != sim::Bus::KLine)
                throw link::LinkError(link::LinkError::Kind::PortOpen,
                                      "The virtual vehicle's car is on CAN, which a K-line cable cannot reach: connect "
                                      "through the ELM327 interface (the port \"Virtual Vehicle (ELM327)\", or kvx "
                                      "--interface elm327).");
            return vehicle.makeWire();
        }
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
