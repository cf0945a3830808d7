#include "app/ProgramWires.h"

#include "link/LinkError.h"
#include "settings/CommSettings.h"
#include "sim/VirtualVehicle.h"

#include <memory>

namespace kvx::app {

// The virtual vehicle lives as long as the factory, so every wire made onto it (one per
// connection) sees the same car. Serial ports need the port drivers, which this build lacks.
link::WireFactory ProgramWires(link::Clock& clock)
{
    auto vehicle = std::make_shared<sim::VirtualVehicle>(clock);
    return [vehicle](int port) -> std::unique_ptr<link::Wire> {
        if (port == kVirtualVehiclePort)
            return vehicle->makeWire();
        throw link::LinkError(link::LinkError::Kind::PortOpen,
                              "Port " + std::to_string(port) + " cannot be opened: no serial port driver in this build.");
    };
}

} // namespace kvx::app
