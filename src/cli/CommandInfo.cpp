#include "cli/Command.h"
#include "cli/OutputFormat.h"
#include "cli/ScreenText.h"
#include "cli/ServiceCommand.h"
#include "obd/InfoPids.h"
#include "session/MainScreen.h"
#include "session/Session.h"

#include <QJsonArray>
#include <cstdio>

namespace kvx::cli {

namespace {

// The cmdModeOnce buttons by name; "o2" picks the layout the unit declares.
constexpr int kObdButton = 0;
constexpr int kReadinessButton = 1;
constexpr int kTwoBankO2Button = 3;
constexpr int kFourBankO2Button = 4;

const QStringList kItems{"readiness", "obd", "o2", "vin"};

} // namespace

int RunInfo(const QStringList& args)
{
    return RunServiceCommand(args, {
        "Reads one information item: readiness (monitor status), obd (the OBD standard), o2 (the "
        "oxygen sensors present) or vin (the vehicle identification number).",
        [](QCommandLineParser& p) { p.addPositionalArgument("item", "readiness, obd, o2 or vin", "readiness|obd|o2|vin"); },
        [](const QCommandLineParser& p) {
            if (p.positionalArguments().size() != 1 || !kItems.contains(p.positionalArguments().at(0)))
                return QString("give one of readiness, obd, o2, vin");
            return QString();
        },
        [](Session& session, const QCommandLineParser& p, OutputFormat format) {
            const QString item = p.positionalArguments().at(0);
            if (item == "vin")
                obd::ReadVehicleId(session);
            else if (item == "readiness")
                obd::ClickModeOnce(session, kReadinessButton);
            else if (item == "obd")
                obd::ClickModeOnce(session, kObdButton);
            else
                obd::ClickModeOnce(session, session.SupportedPids[0x1D][0] ? kFourBankO2Button : kTwoBankO2Button);
            if (format == OutputFormat::Json) {
                QJsonArray lines;
                for (const std::string& line : BoxLines(session.screen.txtInfo))
                    lines.append(Utf8(line));
                PrintJsonLine({{"item", item}, {"lines", lines}});
            } else {
                std::printf("%s", BoxText(session.screen.txtInfo).c_str());
            }
            return 0;
        }});
}

} // namespace kvx::cli
