#pragma once

#include "sim/VehicleProfile.h"

#include <QByteArray>
#include <QString>
#include <stdexcept>

namespace kvx::garage {

// A profile file that cannot be taken as it stands. The text names the file, the key path within
// it (units[0].pids.0C.constant) and what was expected there.
class ProfileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Reads a car from its file; the car's name is the file's name without its extension.
sim::VehicleProfile loadVehicleProfile(const QString& path);

// Reads a car from the text of a profile; fileName only names the source in messages.
sim::VehicleProfile readVehicleProfile(const QByteArray& json, const QString& fileName, const std::string& name);

} // namespace kvx::garage
