#include "cli/Command.h"
#include "cli/ScreenText.h"
#include "cli/ServiceCommand.h"
#include "obd/TroubleCodes.h"
#include "session/MainScreen.h"
#include "session/Session.h"

#include <cstdio>

namespace kvx::cli {
namespace {

int PrintCodes(Session& session)
{
    std::printf("%s", BoxText(session.screen.txtMode347).c_str());
    return 0;
}

const RegisterCommand dtc{{"dtc", "read the stored (or, with --pending, pending) trouble codes", [](const QStringList& args) {
    return RunServiceCommand(args, {
        "Reads the engine unit's stored trouble codes (service 03), or its pending ones (service 07).",
        [](QCommandLineParser& p) { p.addOption({"pending", "Read the pending codes instead."}); },
        nullptr,
        [](Session& session, const QCommandLineParser& p) {
            if (p.isSet("pending"))
                obd::RequestPendingCodes(session);
            else
                obd::RequestStoredCodes(session);
            return PrintCodes(session);
        }});
}}};

const RegisterCommand clear{{"clear", "clear the trouble codes (asks no question first)", [](const QStringList& args) {
    return RunServiceCommand(args, {
        "Clears the engine unit's trouble codes and freeze frame (service 04). There is no prompt.",
        nullptr,
        nullptr,
        [](Session& session, const QCommandLineParser&) {
            obd::RequestClearCodes(session);
            return PrintCodes(session);
        }});
}}};

} // namespace
} // namespace kvx::cli
