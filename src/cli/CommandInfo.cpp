#include "cli/Command.h"
#include "cli/ScreenText.h"
#include "cli/ServiceCommand.h"
#include "obd/InfoPids.h"
#include "session/MainScreen.h"
#include "session/Session.h"

#include <cstdio>

namespace kvx::cli {
namespace {

// The cmdModeOnce buttons by name; "o2" picks the layout the unit declares.
constexpr int kObdButton = 0;
constexpr int kReadinessButton = 1;
constexpr int kTwoBankO2Button = 3;
constexpr int kFourBankO2Button = 4;

const RegisterCommand info{{"info", "readiness, OBD standard, oxygen-sensor layout or VIN", [](const QStringList& args) {
    return RunServiceCommand(args, {
        "Reads one information item: readiness (monitor status), obd (the OBD standard), o2 (the "
        "oxygen sensors present) or vin (the vehicle identification number).",
        [](QCommandLineParser& p) { p.addPositionalArgument("item", "readiness, obd, o2 or vin"); },
        [](const QCommandLineParser& p) {
            static const QStringList items{"readiness", "obd", "o2", "vin"};
            if (p.positionalArguments().size() != 1 || !items.contains(p.positionalArguments().at(0)))
                return QString("give one of readiness, obd, o2, vin");
            return QString();
        },
        [](Session& session, const QCommandLineParser& p) {
            const QString item = p.positionalArguments().at(0);
            if (item == "vin")
                obd::ReadVehicleId(session);
            else if (item == "readiness")
                obd::ClickModeOnce(session, kReadinessButton);
            else if (item == "obd")
                obd::ClickModeOnce(session, kObdButton);
            else
                obd::ClickModeOnce(session, session.SupportedPids[0x1D][0] ? kFourBankO2Button : kTwoBankO2Button);
            std::printf("%s", BoxText(session.screen.txtInfo).c_str());
            return 0;
        }});
}}};

} // namespace
} // namespace kvx::cli
