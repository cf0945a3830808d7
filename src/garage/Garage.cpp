#include "garage/Garage.h"

#include "garage/ProfileReader.h"
#include "garage/ProgramFolders.h"

#include <QDir>
#include <QFileInfo>

namespace kvx::garage {

namespace {
const QString kSuffix = QStringLiteral(".json");
}

QString garageFolder()
{
    return QDir(runFolders().shipped).filePath(QStringLiteral("vehicles"));
}

GarageListing listGarage(const QString& folder)
{
    GarageListing listing;
    const QFileInfoList files = QDir(folder).entryInfoList({"*" + kSuffix}, QDir::Files, QDir::Name);
    for (const QFileInfo& file : files) {
        try {
            const sim::VehicleProfile car = loadVehicleProfile(file.filePath());
            listing.cars.push_back({QString::fromStdString(car.name), QString::fromStdString(car.comment), car.bus});
        } catch (const ProfileError& e) {
            listing.problems << QString::fromStdString(e.what());
        }
    }
    return listing;
}

bool namesFile(const QString& nameOrFile)
{
    return nameOrFile.contains('/') || nameOrFile.contains('\\') || nameOrFile.endsWith(kSuffix);
}

sim::VehicleProfile findVehicle(const QString& nameOrFile, const QString& folder)
{
    if (namesFile(nameOrFile))
        return loadVehicleProfile(nameOrFile);
    const QString path = QDir(folder).filePath(nameOrFile + kSuffix);
    if (nameOrFile.isEmpty() || !QFileInfo(path).isFile())
        throw ProfileError(("no car named '" + nameOrFile + "' in the garage " + QDir::toNativeSeparators(folder))
                               .toStdString());
    return loadVehicleProfile(path);
}

} // namespace kvx::garage
