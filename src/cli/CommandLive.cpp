#include "cli/Command.h"
#include "cli/ConsoleSession.h"
#include "enhanced/Modules.h"
#include "log/Recorder.h"

#include "obd/CommandGuard.h"
#include "obd/Disconnect.h"
#include "obd/LiveData.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QRegularExpression>
#include <csignal>
#include <cstdio>
#include <map>
#include <set>

namespace kvx::cli {

namespace {

// Ctrl+C ends the polling between passes, so a recording is closed with its frame count.
volatile std::sig_atomic_t interrupted = 0;

void onInterrupt(int)
{
    interrupted = 1;
}

// The modules by the names --module takes, in the selection window's order.
const std::map<QString, int> kModules = {{"generic", ModuleGeneric},
                                         {"nissan-ecu", ModuleNissanEcu},
                                         {"nissan-tcu", ModuleNissanTcu},
                                         {"toyota", ModuleToyota}};

// A row is wanted when its identifier starts with one of the names given (a Toyota parameter
// "C1" takes all its sub-values, a Nissan register "1301" all its switches).
bool isWanted(const std::string& id, const std::set<std::string>& wanted)
{
    for (const std::string& w : wanted)
        if (id.compare(0, w.size(), w) == 0)
            return true;
    return false;
}

// Leaves ticked only the grid rows of the wanted items (all when none are named) and names the
// wanted ones the unit does not offer.
std::set<std::string> selectRows(Session& session, const std::set<std::string>& wanted)
{
    std::set<std::string> missing = wanted;
    GridModel& grid = session.screen.GridMode1;
    for (int row = 1; row < grid.rows(); ++row) {
        const std::string id = grid.text(row, obd::PidColumn);
        std::erase_if(missing, [&id](const std::string& w) { return id.compare(0, w.size(), w) == 0; });
        if (!wanted.empty() && !isWanted(id, wanted))
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
        "Connects as the window's module buttons do and polls live data, one line per item per pass: pass, "
        "identifier, description and both value texts."));
    parser.addHelpOption();
    AddConnectionOptions(parser);
    parser.addOption({"log", "Record the passes into the Log folder beside kvx, as the window's Log box does."});
    parser.addOption({"module", "generic (service 01, the default), nissan-ecu, nissan-tcu or toyota.", "M", "generic"});
    parser.addOption({"count", "Passes to run; 0 polls until the unit falls silent or kvx is stopped.", "N", "0"});
    parser.addPositionalArgument("ID",
                                 "Items to poll (all the unit offers when none): a generic PID (0C), a Nissan "
                                 "identifier (1101, or 1301 for its switches) or a Toyota parameter (C1, or B101).",
                                 "[ID...]");
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
    const auto module = kModules.find(parser.value("module").toLower());
    if (module == kModules.end())
        return Fail(args.value(0) + ": --module is generic, nissan-ecu, nissan-tcu or toyota, not '" +
                    parser.value("module") + "'");
    std::set<std::string> wanted;
    static const QRegularExpression twoHex(QStringLiteral("^[0-9A-Fa-f]{2}$"));
    static const QRegularExpression itemId(QStringLiteral("^[0-9A-Fa-f]{2}([0-9A-Fa-f]{2})?$"));
    const bool generic = module->second == ModuleGeneric;
    for (const QString& id : parser.positionalArguments()) {
        if (!(generic ? twoHex : itemId).match(id).hasMatch())
            return Fail(args.value(0) +
                        (generic ? ": a PID is two hex digits (0C, 0D, ...), not '"
                                 : ": an item is two or four hex digits (C1, 1101, ...), not '") +
                        id + "'");
        wanted.insert(id.toUpper().toStdString());
    }

    Session& session = console->session();
    MainScreen& screen = console->screen();

    bool connected = false;
    if (!obd::RunLinkCommand(session, [&] { connected = enhanced::ConnectModule(session, module->second); }))
        return 1;
    if (!connected) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(args.value(0)),
                     screen.StatusBar1.text(1).empty() ? "the connection failed" : screen.StatusBar1.text(1).c_str());
        return 1;
    }
    const std::set<std::string> missing = selectRows(session, wanted);
    for (const std::string& pid : missing)
        std::fprintf(stderr, "%s is not offered by the unit; left out\n", pid.c_str());
    if (!wanted.empty() && missing.size() == wanted.size()) {
        obd::Disconnect(session);
        return Fail(args.value(0) + ": none of the items asked for is offered by the unit");
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
            session, [&] { unitAnswers = enhanced::PollModuleLiveData(session); });
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

const RegisterCommand live{{"live", "poll live data of any module as the LIVE DATA tab does", runLive}};

} // namespace

} // namespace kvx::cli
