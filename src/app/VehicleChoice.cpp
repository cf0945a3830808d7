#include "app/VehicleChoice.h"

#include "garage/Garage.h"
#include "garage/ProfileReader.h"
#include "link/LinkError.h"
#include "session/Session.h"
#include "session/Shell.h"

namespace kvx::app {

namespace {
const QString kOption = QStringLiteral("--virtual-vehicle");
}

sim::VehicleProfile VehicleInForce(const CommSettings& settings)
{
    if (settings.VirtualVehicle.empty())
        return sim::builtInVehicle();
    try {
        return garage::findVehicle(QString::fromStdString(settings.VirtualVehicle), garage::garageFolder());
    } catch (const garage::ProfileError& e) {
        throw link::LinkError(link::LinkError::Kind::PortOpen, std::string("The virtual vehicle: ") + e.what());
    }
}

void CheckVehicleInForce(Session& session)
{
    if (session.settings.PortNumber != kVirtualVehiclePort)
        return;
    try {
        VehicleInForce(session.settings);
    } catch (const link::LinkError& e) {
        session.shell.messageBox("Virtual Vehicle",
                                 std::string(e.what()) + "\nThe built-in car runs instead.", MessageIcon::Exclamation);
        session.settings.VirtualVehicle.clear();
    }
}

QStringList WithVirtualVehicleValue(QStringList arguments)
{
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        if (arguments[i] != kOption)
            continue;
        QString car;
        if (i + 1 < arguments.size() && !arguments[i + 1].startsWith('-'))
            car = arguments.takeAt(i + 1);
        arguments[i] = kOption + '=' + car;
    }
    return arguments;
}

} // namespace kvx::app
