#include "cli/ConsoleSession.h"

#include "data/DtcDescriptions.h"
#include "data/GridLayouts.h"
#include "data/TabLayout.h"
#include "data/VehicleLists.h"
#include "ports/WireFactory.h"

#include <QCoreApplication>
#include <cstdio>

namespace kvx::cli {

void ConsoleShell::messageBox(const std::string& title, const std::string& text, MessageIcon)
{
    std::fprintf(stderr, "%s: %s\n", title.c_str(), text.c_str());
}

void AddConnectionOptions(QCommandLineParser& parser)
{
    parser.addOption({"port", "The virtual vehicle (sim), a serial port number 1-16 or a device path.", "P", "sim"});
    parser.addOption({"protocol", "1 ISO9141 Slow, 2 KW2000 Slow, 3 KW2000 Fast, 4 Try All.", "N", "4"});
    parser.addOption({"trace", "Print every byte on the wire and the wake-up timings."});
}

std::unique_ptr<ConsoleSession> ConsoleSession::FromOptions(const QCommandLineParser& parser, QString& problem)
{
    ports::PortOptions options;
    const std::optional<int> port = ports::parsePortArgument(parser.value("port").toStdString(), options);
    if (!port) {
        problem = "--port takes sim, a number 1-16 or a device path, not '" + parser.value("port") + "'";
        return nullptr;
    }
    bool ok = false;
    const int protocol = parser.value("protocol").toInt(&ok);
    if (!ok || protocol < 1 || protocol > 4) {
        problem = "--protocol takes 1, 2, 3 or 4, not '" + parser.value("protocol") + "'";
        return nullptr;
    }
    return std::unique_ptr<ConsoleSession>(new ConsoleSession(options, *port, protocol, parser.isSet("trace")));
}

ConsoleSession::ConsoleSession(const ports::PortOptions& options, int port, int protocol, bool trace)
    : link_(ports::makeWireFactory(clock_, options), clock_), printer_(stdout), session_(link_, screen_, shell_)
{
    if (trace)
        link_.setTraceSink(&printer_);
    CommSettings& settings = session_.settings;
    settings.PortNumber = port;
    settings.ProtocolNumber = protocol;
    settings.TryAllProtocols = protocol == link::TryAll;
    link_.SetP3Delay(settings.P3Delay);
    link_.SetP4Delay(settings.P4Delay);
    link_.SetInterByteDelay(settings.InterByteDelay);
    data::FillYearList(screen_);
    data::LayoutLiveDataGrid(screen_);
    data::LayoutO2SensorGrid(screen_);
    data::LayoutMonitorTestGrid(screen_);
    data::BuildTabs(screen_, data::ModuleTabs(ModuleGeneric));
    data::LoadDtcDescriptions(QCoreApplication::applicationDirPath().toStdString(), session_.DtcDescriptions, shell_);
}

std::optional<int> ParseCommandLine(QCommandLineParser& parser, const QStringList& args)
{
    if (!parser.parse(args))
        return Fail(args.value(0) + ": " + parser.errorText());
    if (parser.isSet("help")) {
        std::printf("%s", qPrintable(parser.helpText()));
        return 0;
    }
    return std::nullopt;
}

int Fail(const QString& text)
{
    std::fprintf(stderr, "%s\n", qPrintable(text));
    return 2;
}

} // namespace kvx::cli
