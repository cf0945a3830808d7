#include "cli/Command.h"
#include "cli/OutputFormat.h"
#include "cli/ScreenText.h"
#include "cli/ServiceCommand.h"
#include "obd/TroubleCodes.h"
#include "session/MainScreen.h"
#include "session/Session.h"

#include <QRegularExpression>
#include <cstdio>

namespace kvx::cli {

namespace {

// The box line by line: {"code", "description"} for a code line, {"message"} for anything else
// ("No Response From ECU"). Lines repeat across frames in the box, and so they do here.
void printCodesJson(const RichTextModel& box)
{
    static const QRegularExpression codeLine(QStringLiteral("^([PCBU][0-9A-F]{4}) - (.*)$"));
    for (const std::string& line : BoxLines(box)) {
        const auto match = codeLine.match(Utf8(line));
        if (match.hasMatch())
            PrintJsonLine({{"code", match.captured(1)}, {"description", match.captured(2)}});
        else
            PrintJsonLine({{"message", Utf8(line)}});
    }
}

int printCodes(Session& session, OutputFormat format)
{
    if (format == OutputFormat::Json)
        printCodesJson(session.screen.txtMode347);
    else
        std::printf("%s", BoxText(session.screen.txtMode347).c_str());
    return 0;
}

} // namespace

int RunDtc(const QStringList& args)
{
    return RunServiceCommand(args, {
        "Reads the engine unit's stored trouble codes (service 03), or its pending ones (service 07).",
        [](QCommandLineParser& p) { p.addOption({"pending", "Read the pending codes instead."}); },
        nullptr,
        [](Session& session, const QCommandLineParser& p, OutputFormat format) {
            if (p.isSet("pending"))
                obd::RequestPendingCodes(session);
            else
                obd::RequestStoredCodes(session);
            return printCodes(session, format);
        }});
}

int RunClear(const QStringList& args)
{
    return RunServiceCommand(args, {
        "Clears the engine unit's trouble codes and freeze frame (service 04). There is no prompt.",
        nullptr,
        nullptr,
        [](Session& session, const QCommandLineParser&, OutputFormat format) {
            obd::RequestClearCodes(session);
            return printCodes(session, format);
        },
        {}});
}

} // namespace kvx::cli
