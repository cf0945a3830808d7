#pragma once

#include "link/Wire.h"

namespace kvx::app {

// The ports the program can open: the virtual vehicle and the serial devices.
link::WireFactory ProgramWires(link::Clock& clock);

} // namespace kvx::app
