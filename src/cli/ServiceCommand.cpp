#include "cli/ServiceCommand.h"

#include "data/DtcDescriptions.h"
#include "data/GridLayouts.h"
#include "link/LinkError.h"
#include "link/LinkSession.h"
#include "obd/Connection.h"
#include "obd/Disconnect.h"
#include "ports/WireFactory.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

#include <QCoreApplication>
#include <cstdio>

namespace kvx::cli {

namespace {

// Message boxes become lines on stderr; there are no events to pump.
class ConsoleShell : public Shell {
public:
    void messageBox(const std::string& title, const std::string& text, MessageIcon) override
    {
        std::fprintf(stderr, "%s: %s\n", title.c_str(), text.c_str());
    }
    void processEvents() override {}
};

int Fail(const QString& text)
{
    std::fprintf(stderr, "%s\n", qPrintable(text));
    return 2;
}

// "sim" is the virtual vehicle; a number 1-16 a serial port. -1 for anything else.
int ParsePort(const QString& text)
{
    if (text.compare("sim", Qt::CaseInsensitive) == 0)
        return kVirtualVehiclePort;
    bool ok = false;
    const int port = text.toInt(&ok);
    return ok && port >= 1 && port <= 16 ? port : -1;
}

} // namespace

int RunServiceCommand(const QStringList& args, const ServiceCommand& command)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(command.description);
    parser.addHelpOption();
    parser.addOption({"port", "The virtual vehicle (sim) or a serial port number 1-16.", "P", "sim"});
    parser.addOption({"protocol", "1 ISO9141 Slow, 2 KW2000 Slow, 3 KW2000 Fast, 4 Try All.", "N", "4"});
    if (command.addOptions)
        command.addOptions(parser);
    if (!parser.parse(args))
        return Fail(args.value(0) + ": " + parser.errorText());
    if (parser.isSet("help")) {
        std::printf("%s", qPrintable(parser.helpText()));
        return 0;
    }
    const int port = ParsePort(parser.value("port"));
    if (port < 0)
        return Fail(args.value(0) + ": --port takes sim or a number 1-16, not '" + parser.value("port") + "'");
    bool ok = false;
    const int protocol = parser.value("protocol").toInt(&ok);
    if (!ok || protocol < 1 || protocol > 4)
        return Fail(args.value(0) + ": --protocol takes 1, 2, 3 or 4, not '" + parser.value("protocol") + "'");
    if (command.check) {
        const QString problem = command.check(parser);
        if (!problem.isEmpty())
            return Fail(args.value(0) + ": " + problem);
    }

    link::SteadyClock clock;
    link::LinkSession link(ports::makeWireFactory(clock), clock);
    MainScreen screen;
    ConsoleShell shell;
    Session session(link, screen, shell);
    session.settings.PortNumber = port;
    session.settings.ProtocolNumber = protocol;
    session.settings.TryAllProtocols = protocol == 4;
    // Laid out and loaded as the window does at start-up, so the same routines find the same screen.
    data::LayoutO2SensorGrid(screen);
    data::LayoutMonitorTestGrid(screen);
    data::LoadDtcDescriptions(QCoreApplication::applicationDirPath().toStdString(), session.DtcDescriptions, shell);

    try {
        if (!obd::ConnectEcu(session)) {
            std::fprintf(stderr, "%s: no unit answered on port %s\n", qPrintable(args.value(0)),
                         qPrintable(parser.value("port")));
            return 1;
        }
        const int code = command.run(session, parser);
        obd::Disconnect(session);
        return code;
    } catch (const link::LinkError& e) {
        obd::Disconnect(session);
        std::fprintf(stderr, "Failed Communication: %s\n", e.what());
        return 1;
    }
}

} // namespace kvx::cli
