#include "cli/ServiceCommand.h"

#include "cli/ConsoleSession.h"
#include "link/LinkError.h"
#include "obd/Connection.h"
#include "obd/Disconnect.h"

#include <cstdio>

namespace kvx::cli {

int RunServiceCommand(const QStringList& args, const ServiceCommand& command)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(command.description);
    parser.addHelpOption();
    AddConnectionOptions(parser);
    if (command.addOptions)
        command.addOptions(parser);
    if (const auto code = ParseCommandLine(parser, args))
        return *code;
    QString problem;
    const auto console = ConsoleSession::FromOptions(parser, problem);
    if (!console)
        return Fail(args.value(0) + ": " + problem);
    if (command.check) {
        problem = command.check(parser);
        if (!problem.isEmpty())
            return Fail(args.value(0) + ": " + problem);
    }

    Session& session = console->session();
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
