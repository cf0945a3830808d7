#pragma once

#include "session/CommSettings.h"
#include "sim/VehicleProfile.h"

#include <QStringList>

namespace kvx {
struct Session;
}

namespace kvx::app {

// The car the virtual vehicle port opens onto now: the one the settings name, or the built-in car
// when they name none. A car that cannot be had throws link::LinkError, so the connection ends
// with the reason, as on a port that cannot open.
sim::VehicleProfile VehicleInForce(const CommSettings& settings);

// At start-up, when the port is the virtual vehicle: a named car that cannot be had gets a box
// saying why, and the built-in car runs instead (the store keeps what it holds).
void CheckVehicleInForce(Session& session);

// --virtual-vehicle takes a car or nothing ("--virtual-vehicle hybrid", "--virtual-vehicle"),
// which the command-line parser cannot express: the arguments are rewritten so that the option
// always carries a value, empty when none followed it.
QStringList WithVirtualVehicleValue(QStringList arguments);

} // namespace kvx::app
