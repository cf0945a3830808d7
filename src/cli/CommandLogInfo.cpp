#include "cli/Command.h"
#include "cli/CommandLine.h"
#include "log/LogFile.h"
#include "log/LogSummary.h"

#include <QCommandLineParser>
#include <cstdio>

namespace kvx::cli {

int RunLogInfo(const QStringList& args)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("Prints what a recorded log holds.");
    parser.addHelpOption();
    parser.addPositionalArgument("FILE.log", "The log to describe.");
    if (const auto code = ParseCommandLine(parser, args))
        return *code;
    if (parser.positionalArguments().size() != 1)
        return Fail(args.value(0) + ": give one log file");
    const std::string path = parser.positionalArguments().at(0).toStdString();
    kvx::log::LogSummary summary;
    try {
        summary = kvx::log::SummariseLog(path);
    } catch (const kvx::log::LogError& e) {
        std::fprintf(stderr, "kvx log-info: %s\n", e.what());
        return 1;
    }
    std::printf("Header:     %s\n", summary.header.c_str());
    std::printf("Date:       %s\n", summary.date.c_str());
    std::printf("Grid rows:  %s\n", summary.gridRows.c_str());
    std::printf("Frames:     %s\n", summary.frameCount.empty() ? "(not recorded: the recording never stopped)"
                                                                  : summary.frameCount.c_str());
    std::printf("In file:    %ld\n", summary.framesInFile);
    if (!summary.damage.empty()) {
        std::printf("Damaged:    %s\n", summary.damage.c_str());
        return 1;
    }
    return 0;
}

} // namespace kvx::cli
