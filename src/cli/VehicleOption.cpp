#include "cli/VehicleOption.h"

#include "garage/Garage.h"
#include "garage/ProfileReader.h"

namespace kvx::cli {

std::optional<sim::VehicleProfile> VehicleFromOption(const QString& nameOrFile, QString& problem)
{
    try {
        return garage::findVehicle(nameOrFile, garage::garageFolder());
    } catch (const garage::ProfileError& e) {
        problem = "--vehicle: " + QString::fromStdString(e.what());
        if (!garage::namesFile(nameOrFile))
            problem += QStringLiteral(" ('kvx sim --list' names its cars)");
        return std::nullopt;
    }
}

} // namespace kvx::cli
