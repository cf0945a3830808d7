#include "cli/Command.h"
#include "cli/OutputFormat.h"
#include "cli/ScreenText.h"
#include "cli/ServiceCommand.h"
#include "obd/O2SensorTests.h"
#include "session/MainScreen.h"
#include "session/Session.h"

#include <cstdio>

namespace kvx::cli {

int RunO2(const QStringList& args)
{
    return RunServiceCommand(args, {
        "Reads the oxygen-sensor monitoring tests (service 05) of one sensor.",
        [](QCommandLineParser& p) { p.addPositionalArgument("sensor", "The sensor, e.g. \"Bank 1 Sensor 1\"."); },
        [](const QCommandLineParser& p) {
            if (p.positionalArguments().size() != 1)
                return QString("give one sensor name, e.g. \"Bank 1 Sensor 1\"");
            // An unknown name is still sent (without a sensor number), as the window would; say so.
            if (obd::O2SensorNumber(p.positionalArguments().at(0).toStdString()).empty())
                std::fprintf(stderr, "note: '%s' is not a known sensor name; the tests are asked without one\n",
                             qPrintable(p.positionalArguments().at(0)));
            return QString();
        },
        [](Session& session, const QCommandLineParser& p, OutputFormat format) {
            session.screen.cmbMode5.setText(p.positionalArguments().at(0).toStdString());
            obd::RequestO2SensorTests(session);
            if (format == OutputFormat::Json)
                PrintGridJson(session.screen.gridMode5);
            else
                std::printf("%s", GridText(session.screen.gridMode5).c_str());
            return 0;
        }});
}

} // namespace kvx::cli
