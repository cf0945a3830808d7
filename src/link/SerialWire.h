#pragma once

#include "link/Wire.h"

#include <memory>
#include <string>

namespace kvx::link {

// A serial device ("/dev/ttyUSB0", "COM3") driven natively, so the exact 10400 baud, the break and
// deadline reads are under our control (Qt's serial port offers none of the three exactly).
std::unique_ptr<Wire> makeSerialWire(const std::string& device, Clock& clock);

// The device a settings port number names on this system: /dev/ttyUSB{n-1} or COMn.
std::string serialDeviceForPort(int port);

} // namespace kvx::link
