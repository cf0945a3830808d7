#include "cli/Command.h"
#include "cli/CommandLine.h"
#include "cli/Interrupt.h"
#include "cli/LivePrinter.h"
#include "cli/ServiceCommand.h"
#include "data/GridLayouts.h"
#include "enhanced/Modules.h"
#include "garage/ProgramFolders.h"
#include "log/LogFormat.h"
#include "log/Recorder.h"
#include "obd/CommandGuard.h"
#include "obd/LiveData.h"
#include "session/MainScreen.h"
#include "session/Session.h"

#include <QCommandLineParser>
#include <QDateTime>
#include <QRegularExpression>
#include <cstdio>
#include <map>
#include <optional>
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

// --count: the passes to run, 0 for no end; nullopt when it is not such a number.
std::optional<long> passCount(const QCommandLineParser& p)
{
    bool ok = false;
    const long count = p.value("count").toLong(&ok);
    return ok && count >= 0 ? std::optional<long>(count) : std::nullopt;
}

std::optional<int> moduleOf(const QCommandLineParser& p)
{
    const auto module = kModules.find(p.value("module").toLower());
    return module == kModules.end() ? std::nullopt : std::optional<int>(module->second);
}

// The items named on the command line, upper-case; the reason in problem when one is not an item
// of the module.
std::set<std::string> wantedItems(const QCommandLineParser& p, int module, QString& problem)
{
    static const QRegularExpression twoHex(QStringLiteral("^[0-9A-Fa-f]{2}$"));
    static const QRegularExpression itemId(QStringLiteral("^[0-9A-Fa-f]{2}([0-9A-Fa-f]{2})?$"));
    const bool generic = module == ModuleGeneric;
    std::set<std::string> wanted;
    for (const QString& id : p.positionalArguments()) {
        if (!(generic ? twoHex : itemId).match(id).hasMatch()) {
            problem = (generic ? "a PID is two hex digits (0C, 0D, ...), not '"
                               : "an item is two or four hex digits (C1, 1101, ...), not '") +
                      id + "'";
            return {};
        }
        wanted.insert(id.toUpper().toStdString());
    }
    return wanted;
}

QString checkOptions(const QCommandLineParser& p)
{
    if (!passCount(p))
        return "--count takes a number of passes (0 for no end), not '" + p.value("count") + "'";
    const auto module = moduleOf(p);
    if (!module)
        return "--module is generic, nissan-ecu, nissan-tcu or toyota, not '" + p.value("module") + "'";
    QString problem;
    wantedItems(p, *module, problem);
    return problem;
}

void addOptions(QCommandLineParser& p)
{
    p.addOption({"log", "Record the passes into the Log folder (beside kvx, or the user's data folder when installed), "
                        "as the window's Log box does."});
    p.addOption({"module", WithDefault("generic (service 01), nissan-ecu, nissan-tcu or toyota.", "generic"), "M",
                 "generic"});
    p.addOption({"count", WithDefault("Passes to run; 0 polls until the unit falls silent or Ctrl+C.", "0"), "N", "0"});
    p.addPositionalArgument("ID",
                            "Items to poll (all the unit offers when none): a generic PID (0C), a Nissan "
                            "identifier (1101, or 1301 for its switches) or a Toyota parameter (C1, or B101).",
                            "[ID...]");
}

// The passes on the connected module, printed one by one.
int pollPasses(Session& session, const QCommandLineParser& p, OutputFormat format)
{
    // Polling an empty grid would go round without asking anything, for ever when no count is given.
    if (session.screen.GridMode1.rows() <= 1) {
        std::fprintf(stderr, "kvx live: the unit offers no item to poll with this module\n");
        return 1;
    }
    QString problem;
    const std::set<std::string> wanted = wantedItems(p, session.ModuleIndex, problem);
    const std::set<std::string> missing = selectRows(session, wanted);
    for (const std::string& id : missing)
        std::fprintf(stderr, "%s is not offered by the unit; left out\n", id.c_str());
    if (!wanted.empty() && missing.size() == wanted.size())
        return Fail(QStringLiteral("kvx live: none of the items asked for is offered by the unit"));
    if (p.isSet("log")) {
        if (!log::StartLogging(session, garage::runFolders(), QDateTime::currentDateTime()))
            return 1;
        std::fprintf(stderr, "recording to %s\n", session.LogPath.c_str());
    }
    CatchInterrupt(session.Logging ? session.LogPath : std::string());

    // The same passes as the window's loop, one at a time so each can be printed.
    const long count = *passCount(p);
    LivePrinter printer(session.screen.GridMode1, format, session.ModuleIndex == ModuleGeneric ? "PID" : "Item");
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
    return ended ? 1 : 0;
}

} // namespace

int RunLive(const QStringList& args)
{
    return RunServiceCommand(args, {
        "Connects as the window's module buttons do and polls live data, one line per item per pass: pass, "
        "identifier, description and both value texts; \"(no answer)\" for an item the unit left silent in "
        "that pass. Ctrl+C stops at the next request and finishes the recording; a second Ctrl+C quits at once.",
        addOptions, checkOptions, pollPasses, {"csv", "json"}, [](const QCommandLineParser& p) { return *moduleOf(p); }});
}

} // namespace kvx::cli
