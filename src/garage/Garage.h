#pragma once

#include "sim/VehicleProfile.h"

#include <QString>
#include <QStringList>
#include <vector>

namespace kvx::garage {

// The garage: a folder of profile files, one car each, named by the file's name without ".json".
// It ships as "vehicles" in the folder of the program's shipped files.
QString garageFolder();

// The garage's name of the built-in car, the one a virtual vehicle runs when no car is chosen.
inline constexpr const char* kDefaultCar = "default";

struct GarageCar {
    QString name;
    QString comment;
    sim::Bus bus = sim::Bus::KLine;
};

struct GarageListing {
    std::vector<GarageCar> cars; // by name
    QStringList problems;        // one line for each file that does not load
};

GarageListing listGarage(const QString& folder);

// A text that names a file rather than a car of the garage: it has a folder or ends in ".json".
bool namesFile(const QString& nameOrFile);

// The car a user named: a car of the garage by name, or a profile file by its path. Throws
// ProfileError when there is no such car or its file is refused.
sim::VehicleProfile findVehicle(const QString& nameOrFile, const QString& folder);

} // namespace kvx::garage
