#include "app/ProgramWires.h"

#include "link/LinkError.h"

namespace kvx::app {

// Until the port drivers are linked in, opening any port says so plainly.
link::WireFactory ProgramWires(link::Clock&)
{
    return [](int port) -> std::unique_ptr<link::Wire> {
        throw link::LinkError(link::LinkError::Kind::PortOpen,
                              "Port " + std::to_string(port) + " cannot be opened: no port driver in this build.");
    };
}

} // namespace kvx::app
