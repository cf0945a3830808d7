#include "cli/Command.h"
#include "cli/CommandLine.h"
#include "cli/ConsoleSession.h"
#include "cli/Interrupt.h"
#include "cli/LivePrinter.h"
#include "data/GridLayouts.h"
#include "enhanced/Modules.h"
#include "log/LogFormat.h"
#include "log/Recorder.h"
#include "obd/CommandGuard.h"
#include "obd/Disconnect.h"
#include "obd/LiveData.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QRegularExpression>
#include <cstdio>
#include <map>
#include <set>

namespace kvx::cli {

namespace {

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
        const std::string id = grid.text(row, data::PidColumn);
        std::erase_if(missing, [&id](const std::string& w) { return id.compare(0, w.size(), w) == 0; });
        if (!wanted.empty() && !isWanted(id, wanted))
            obd::ToggleLiveDataRow(session, row);
    }
    return missing;
}

// Stops a recording and says how many frames it holds.
void finishRecording(Session& session)
{
    if (!session.Logging)
        return;
    const long frames = session.LogRecordNumber - log::kFirstFrameRecord;
    log::StopLogging(session);
    std::fprintf(stderr, "%ld frames recorded in %s\n", frames, session.LogPath.c_str());
}

} // namespace

int RunLive(const QStringList& args)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Connects as the window's module buttons do and polls live data, one line per item per pass: pass, "
        "identifier, description and both value texts; \"(no answer)\" for an item the unit left silent in "
        "that pass. Ctrl+C stops at the next request and finishes the recording; a second Ctrl+C quits at once."));
    parser.addHelpOption();
    AddConnectionOptions(parser);
    const QStringList formats{"csv", "json"};
    AddFormatOption(parser, formats);
    parser.addOption({"log", "Record the passes into the Log folder beside kvx, as the window's Log box does."});
    parser.addOption({"module", WithDefault("generic (service 01), nissan-ecu, nissan-tcu or toyota.", "generic"), "M",
                      "generic"});
    parser.addOption({"count",
                      WithDefault("Passes to run; 0 polls until the unit falls silent or Ctrl+C.", "0"), "N", "0"});
    parser.addPositionalArgument("ID",
                                 "Items to poll (all the unit offers when none): a generic PID (0C), a Nissan "
                                 "identifier (1101, or 1301 for its switches) or a Toyota parameter (C1, or B101).",
                                 "[ID...]");
    if (const auto code = ParseCommandLine(parser, args))
        return *code;

    const QString command = args.value(0);
    QString problem;
    const auto format = FormatFromOptions(parser, formats, problem);
    if (!format)
        return Fail(command + ": " + problem);
    bool ok = false;
    const long count = parser.value("count").toLong(&ok);
    if (!ok || count < 0)
        return Fail(command + ": --count takes a number of passes (0 for no end), not '" + parser.value("count") + "'");
    const auto module = kModules.find(parser.value("module").toLower());
    if (module == kModules.end())
        return Fail(command + ": --module is generic, nissan-ecu, nissan-tcu or toyota, not '" +
                    parser.value("module") + "'");
    std::set<std::string> wanted;
    static const QRegularExpression twoHex(QStringLiteral("^[0-9A-Fa-f]{2}$"));
    static const QRegularExpression itemId(QStringLiteral("^[0-9A-Fa-f]{2}([0-9A-Fa-f]{2})?$"));
    const bool generic = module->second == ModuleGeneric;
    for (const QString& id : parser.positionalArguments()) {
        if (!(generic ? twoHex : itemId).match(id).hasMatch())
            return Fail(command +
                        (generic ? ": a PID is two hex digits (0C, 0D, ...), not '"
                                 : ": an item is two or four hex digits (C1, 1101, ...), not '") +
                        id + "'");
        wanted.insert(id.toUpper().toStdString());
    }
    const auto console = ConsoleSession::FromOptions(parser, problem);
    if (!console)
        return Fail(command + ": " + problem);

    Session& session = console->session();
    MainScreen& screen = console->screen();
    bool connected = false;
    if (!obd::RunLinkCommand(session, [&] { connected = enhanced::ConnectModule(session, module->second); }))
        return 1;
    if (!connected)
        return ConnectionFailed(command, parser, screen);
    const std::set<std::string> missing = selectRows(session, wanted);
    for (const std::string& id : missing)
        std::fprintf(stderr, "%s is not offered by the unit; left out\n", id.c_str());
    if (!wanted.empty() && missing.size() == wanted.size()) {
        obd::Disconnect(session);
        return Fail(command + ": none of the items asked for is offered by the unit");
    }
    if (parser.isSet("log")) {
        if (!log::StartLogging(session, QCoreApplication::applicationDirPath().toStdString(),
                               QDateTime::currentDateTime())) {
            obd::Disconnect(session);
            return 1;
        }
        std::fprintf(stderr, "recording to %s\n", session.LogPath.c_str());
    }
    CatchInterrupt(session.Logging ? session.LogPath : std::string());

    // The same passes as the window's loop, one at a time so each can be printed.
    LivePrinter printer(screen.GridMode1, *format, generic ? "PID" : "Item");
    session.Busy = true;
    bool unitAnswers = true;
    for (long pass = 1; unitAnswers && session.Busy && !session.LinkDown && !InterruptRequested() &&
                        (count == 0 || pass <= count);
         ++pass) {
        printer.startPass();
        const bool linkOk =
            obd::RunLinkCommand(session, [&] { unitAnswers = enhanced::PollModuleLiveData(session); });
        if (!linkOk) {
            finishRecording(session);
            return 1;
        }
        printer.printPass(pass, InterruptRequested());
    }
    session.Busy = false;
    const bool ended = !unitAnswers || session.LinkDown;
    finishRecording(session);
    obd::Disconnect(session);
    return ended ? 1 : 0;
}

} // namespace kvx::cli
