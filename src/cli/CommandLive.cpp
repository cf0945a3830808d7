#include "cli/Command.h"
#include "cli/TracePrinter.h"

#include "data/TabLayout.h"
#include "link/LinkSession.h"
#include "obd/CommandGuard.h"
#include "obd/Connection.h"
#include "obd/Disconnect.h"
#include "obd/LiveData.h"
#include "ports/WireFactory.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

#include <QCommandLineParser>
#include <QRegularExpression>
#include <cstdio>
#include <set>

namespace kvx::cli {

namespace {

// Message boxes become "Title: text" lines; a console has no events to let run.
class ConsoleShell : public Shell {
public:
    void messageBox(const std::string& title, const std::string& text, MessageIcon) override
    {
        std::fprintf(stderr, "%s: %s\n", title.c_str(), text.c_str());
    }
    void processEvents() override {}
};

int fail(const QString& text)
{
    std::fprintf(stderr, "%s\n", qPrintable(text));
    return 2;
}

// Leaves ticked only the grid rows of the wanted parameters (all when none are named) and
// names the wanted ones the unit does not support.
std::set<std::string> selectRows(Session& session, const std::set<std::string>& wanted)
{
    std::set<std::string> missing = wanted;
    GridModel& grid = session.screen.GridMode1;
    for (int row = 1; row < grid.rows(); ++row) {
        const std::string pid = grid.text(row, obd::PidColumn);
        missing.erase(pid);
        if (!wanted.empty() && !wanted.count(pid))
            obd::ToggleLiveDataRow(session, row);
    }
    return missing;
}

void printPass(const GridModel& grid, long pass)
{
    for (int row = 1; row < grid.rows(); ++row) {
        if (grid.text(row, obd::MarkerColumn) == obd::kEmptyMarker)
            continue;
        std::printf("%5ld  %s  %-34s  %-16s  %s\n", pass, grid.text(row, obd::PidColumn).c_str(),
                    grid.text(row, obd::DescriptionColumn).c_str(), grid.text(row, obd::ValueColumn).c_str(),
                    grid.text(row, obd::AltValueColumn).c_str());
    }
    std::fflush(stdout);
}

int runLive(const QStringList& args)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Connects as the window's \"OBD II GENERIC\" does and polls live data (service 01), one line per "
        "parameter per pass: pass, PID, description and both value texts."));
    parser.addHelpOption();
    parser.addOption({"port", "The virtual vehicle (sim), a serial port number 1-16 or a device path.", "P", "sim"});
    parser.addOption({"protocol", "1 ISO9141 Slow, 2 KW2000 Slow, 3 KW2000 Fast, 4 Try All.", "N", "4"});
    parser.addOption({"trace", "Print every byte on the wire and the wake-up timings."});
    parser.addOption({"count", "Passes to run; 0 polls until the unit falls silent or kvx is stopped.", "N", "0"});
    parser.addPositionalArgument("PID", "Parameters to poll as two hex digits (all supported when none).", "[PID...]");
    if (!parser.parse(args))
        return fail(args.value(0) + ": " + parser.errorText());
    if (parser.isSet("help")) {
        std::printf("%s", qPrintable(parser.helpText()));
        return 0;
    }

    ports::PortOptions options;
    const std::optional<int> port = ports::parsePortArgument(parser.value("port").toStdString(), options);
    if (!port)
        return fail(args.value(0) + ": --port takes sim, a number 1-16 or a device path, not '" + parser.value("port") + "'");
    bool ok = false;
    const int protocol = parser.value("protocol").toInt(&ok);
    if (!ok || protocol < 1 || protocol > 4)
        return fail(args.value(0) + ": --protocol takes 1, 2, 3 or 4, not '" + parser.value("protocol") + "'");
    const long count = parser.value("count").toLong(&ok);
    if (!ok || count < 0)
        return fail(args.value(0) + ": --count takes a number of passes (0 for no end), not '" + parser.value("count") + "'");
    std::set<std::string> wanted;
    static const QRegularExpression twoHex(QStringLiteral("^[0-9A-Fa-f]{2}$"));
    for (const QString& pid : parser.positionalArguments()) {
        if (!twoHex.match(pid).hasMatch())
            return fail(args.value(0) + ": a PID is two hex digits (0C, 0D, ...), not '" + pid + "'");
        wanted.insert(pid.toUpper().toStdString());
    }

    link::SteadyClock clock;
    link::LinkSession link(ports::makeWireFactory(clock, options), clock);
    TracePrinter printer(stdout);
    if (parser.isSet("trace"))
        link.setTraceSink(&printer);
    MainScreen screen;
    ConsoleShell shell;
    Session session(link, screen, shell);
    CommSettings& settings = session.settings;
    settings.PortNumber = *port;
    settings.ProtocolNumber = protocol;
    settings.TryAllProtocols = protocol == link::TryAll;
    link.SetP3Delay(settings.P3Delay);
    link.SetP4Delay(settings.P4Delay);
    link.SetInterByteDelay(settings.InterByteDelay);
    data::BuildTabs(screen, data::ModuleTabs(ModuleGeneric));

    if (!obd::ConnectEcu(session)) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(args.value(0)),
                     screen.StatusBar1.text(1).empty() ? "the connection failed" : screen.StatusBar1.text(1).c_str());
        return 1;
    }
    const std::set<std::string> missing = selectRows(session, wanted);
    for (const std::string& pid : missing)
        std::fprintf(stderr, "PID %s is not supported by unit %s; left out\n", pid.c_str(), session.EcuAddress.c_str());
    if (!wanted.empty() && missing.size() == wanted.size()) {
        obd::Disconnect(session);
        return fail(args.value(0) + ": none of the PIDs asked for is supported");
    }

    // The same loop as the window's, one pass at a time so each pass can be printed.
    session.Busy = true;
    bool unitAnswers = true;
    for (long pass = 1; unitAnswers && session.Busy && !session.LinkDown && (count == 0 || pass <= count); ++pass) {
        const bool linkOk = obd::RunLinkCommand(
            session, [&] { unitAnswers = obd::PollLiveData(session, session.HeaderByte1, session.HeaderByte2); });
        if (!linkOk)
            return 1;
        printPass(screen.GridMode1, pass);
    }
    const bool ended = !unitAnswers || session.LinkDown;
    obd::Disconnect(session);
    return ended ? 1 : 0;
}

const RegisterCommand live{{"live", "poll live data (service 01) as the LIVE DATA tab does", runLive}};

} // namespace

} // namespace kvx::cli
