#include "ports/WireFactory.h"

#include "link/SerialWire.h"
#include "session/CommSettings.h"

#include <memory>

namespace kvx::ports {

namespace {
constexpr int kLastSerialPort = 16;
}

link::WireFactory makeWireFactory(link::Clock& clock, PortOptions options)
{
    auto vehicle = std::make_shared<std::unique_ptr<sim::VirtualVehicle>>();
    return [&clock, options, vehicle](int port) -> std::unique_ptr<link::Wire> {
        if (port == kVirtualVehiclePort) {
            if (!*vehicle)
                *vehicle = std::make_unique<sim::VirtualVehicle>(clock, options.vehicle);
            return (*vehicle)->makeWire();
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
