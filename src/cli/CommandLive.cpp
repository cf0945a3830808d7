#include "cli/Command.h"
#include "cli/ConsoleSession.h"
#include "log/Recorder.h"

#include "obd/CommandGuard.h"
#include "obd/Connection.h"
#include "obd/Disconnect.h"
#include "obd/LiveData.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QRegularExpression>
#include <csignal>
#include <cstdio>
#include <set>

namespace kvx::cli {

namespace {

// Ctrl+C ends the polling between passes, so a recording is closed with its frame count.
volatile std::sig_atomic_t interrupted = 0;

void onInterrupt(int)
{
    interrupted = 1;
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
    AddConnectionOptions(parser);
    parser.addOption({"log", "Record the passes into the Log folder beside kvx, as the window's Log box does."});
    parser.addOption({"count", "Passes to run; 0 polls until the unit falls silent or kvx is stopped.", "N", "0"});
    parser.addPositionalArgument("PID", "Parameters to poll as two hex digits (all supported when none).", "[PID...]");
    if (const auto code = ParseCommandLine(parser, args))
        return *code;

    QString problem;
    const auto console = ConsoleSession::FromOptions(parser, problem);
    if (!console)
        return Fail(args.value(0) + ": " + problem);
    bool ok = false;
    const long count = parser.value("count").toLong(&ok);
    if (!ok || count < 0)
        return Fail(args.value(0) + ": --count takes a number of passes (0 for no end), not '" + parser.value("count") + "'");
    std::set<std::string> wanted;
    static const QRegularExpression twoHex(QStringLiteral("^[0-9A-Fa-f]{2}$"));
    for (const QString& pid : parser.positionalArguments()) {
        if (!twoHex.match(pid).hasMatch())
            return Fail(args.value(0) + ": a PID is two hex digits (0C, 0D, ...), not '" + pid + "'");
        wanted.insert(pid.toUpper().toStdString());
    }

    Session& session = console->session();
    MainScreen& screen = console->screen();

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
        return Fail(args.value(0) + ": none of the PIDs asked for is supported");
    }
    if (parser.isSet("log")) {
        if (!log::StartLogging(session, QCoreApplication::applicationDirPath().toStdString(),
                               QDateTime::currentDateTime())) {
            obd::Disconnect(session);
            return 1;
        }
        std::fprintf(stderr, "recording to %s\n", session.LogPath.c_str());
    }
    std::signal(SIGINT, onInterrupt);

    // The same loop as the window's, one pass at a time so each pass can be printed.
    session.Busy = true;
    bool unitAnswers = true;
    for (long pass = 1; unitAnswers && session.Busy && !session.LinkDown && (count == 0 || pass <= count) && !interrupted; ++pass) {
        const bool linkOk = obd::RunLinkCommand(
            session, [&] { unitAnswers = obd::PollLiveData(session, session.HeaderByte1, session.HeaderByte2); });
        if (!linkOk) {
            log::StopLogging(session);
            return 1;
        }
        printPass(screen.GridMode1, pass);
    }
    const bool ended = !unitAnswers || session.LinkDown;
    log::StopLogging(session);
    obd::Disconnect(session);
    return ended ? 1 : 0;
}

const RegisterCommand live{{"live", "poll live data (service 01) as the LIVE DATA tab does", runLive}};

} // namespace

} // namespace kvx::cli
