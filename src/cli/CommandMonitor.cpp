#include "cli/Command.h"
#include "cli/CommandLine.h"
#include "cli/OutputFormat.h"
#include "cli/ScreenText.h"
#include "cli/ServiceCommand.h"
#include "obd/MonitorTests.h"
#include "session/MainScreen.h"
#include "session/Session.h"

#include <cstdio>

namespace kvx::cli {

int RunMonitor(const QStringList& args)
{
    return RunServiceCommand(args, {
        "Reads the non-continuous monitoring tests (service 06). Test descriptions need --make.",
        [](QCommandLineParser& p) {
            p.addOption({"make", WithDefault("The vehicle's make, for test descriptions (e.g. Acura).", "none"), "M"});
            p.addOption({"year", WithDefault("The vehicle's model year (e.g. 1997).", "none"), "Y"});
        },
        [](const QCommandLineParser& p) {
            return p.isSet("year") && !p.isSet("make") ? QString("--year needs --make") : QString();
        },
        [](Session& session, const QCommandLineParser& p, OutputFormat format) {
            session.screen.cmbYear.setText(p.value("year").toStdString());
            session.screen.cmbMake.setText(p.value("make").toStdString());
            obd::RequestMonitorTests(session);
            if (format == OutputFormat::Json)
                PrintGridJson(session.screen.gridMode6);
            else
                std::printf("%s", GridText(session.screen.gridMode6).c_str());
            return 0;
        }});
}

} // namespace kvx::cli
