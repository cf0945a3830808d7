#include "cli/Command.h"
#include "cli/ScreenText.h"
#include "cli/ServiceCommand.h"
#include "obd/FreezeFrame.h"
#include "session/MainScreen.h"
#include "session/Session.h"

#include <cstdio>

namespace kvx::cli {
namespace {

const RegisterCommand freeze{{"freeze", "read a freeze frame", [](const QStringList& args) {
    return RunServiceCommand(args, {
        "Reads every parameter the engine unit keeps in a freeze frame (service 02).",
        [](QCommandLineParser& p) { p.addOption({"frame", "The frame number, as sent (default 00).", "NN", "00"}); },
        nullptr,
        [](Session& session, const QCommandLineParser& p) {
            auto& frames = session.screen.cmbFrame;
            frames.addItem("00");
            frames.setText(p.value("frame").toStdString());
            obd::RequestFreezeFrame(session);
            std::printf("%s", BoxText(session.screen.txtMode2).c_str());
            return 0;
        }});
}}};

} // namespace
} // namespace kvx::cli
