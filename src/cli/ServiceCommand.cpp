#include "cli/ServiceCommand.h"

#include "cli/CommandLine.h"
#include "cli/ConsoleSession.h"
#include "enhanced/Modules.h"
#include "link/LinkError.h"
#include "obd/Disconnect.h"
#include "session/Session.h"

#include <cstdio>

namespace kvx::cli {

int RunServiceCommand(const QStringList& args, const ServiceCommand& command)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(command.description);
    parser.addHelpOption();
    AddConnectionOptions(parser);
    if (!command.formats.isEmpty())
        AddFormatOption(parser, command.formats);
    if (command.addOptions)
        command.addOptions(parser);
    if (const auto code = ParseCommandLine(parser, args))
        return *code;
    QString problem;
    OutputFormat format = OutputFormat::Text;
    if (!command.formats.isEmpty()) {
        const auto chosen = FormatFromOptions(parser, command.formats, problem);
        if (!chosen)
            return Fail(args.value(0) + ": " + problem);
        format = *chosen;
    }
    if (command.check) {
        problem = command.check(parser);
        if (!problem.isEmpty())
            return Fail(args.value(0) + ": " + problem);
    }
    const auto console = ConsoleSession::FromOptions(parser, problem);
    if (!console)
        return Fail(args.value(0) + ": " + problem);

    Session& session = console->session();
    try {
        if (!enhanced::ConnectModule(session, command.module ? command.module(parser) : ModuleGeneric))
            return ConnectionFailed(args.value(0), parser, session.screen);
        const int code = command.run(session, parser, format);
        obd::Disconnect(session);
        return code;
    } catch (const link::LinkError& e) {
        obd::Disconnect(session);
        std::fprintf(stderr, "Failed Communication: %s\n", e.what());
        return 1;
    }
}

} // namespace kvx::cli
