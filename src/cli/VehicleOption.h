#pragma once

#include "sim/VehicleProfile.h"

#include <QString>
#include <optional>

namespace kvx::cli {

// The car a --vehicle option names: a car of the garage beside kvx, or a profile file. nullopt
// with the reason (the file, the key and what was expected) in problem when it cannot be had.
std::optional<sim::VehicleProfile> VehicleFromOption(const QString& nameOrFile, QString& problem);

} // namespace kvx::cli
