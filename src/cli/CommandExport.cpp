#include "cli/Command.h"
#include "cli/CommandLine.h"
#include "log/LogExport.h"
#include "log/LogFile.h"

#include <QCommandLineParser>
#include <cstdio>

namespace kvx::cli {

int RunExport(const QStringList& args)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("Writes a live-data log as CSV or JSON: a row per frame, or per item of a frame for "
                                     "Nissan and Toyota logs, with its receive time and each value's number and unit.");
    parser.addHelpOption();
    parser.addPositionalArgument("FILE.log", "The log to export.");
    parser.addOption({{"o", "output"}, WithDefault("The file to write.", "the log's name with .csv or .json"), "FILE"});
    parser.addOption({"format", WithDefault("csv (a heading line, then a line per item) or json (an object per line).", "csv"),
                      "F", "csv"});
    if (const auto code = ParseCommandLine(parser, args))
        return *code;
    const QString format = parser.value("format").toLower();
    if (format != "csv" && format != "json")
        return Fail(args.value(0) + ": --format takes csv or json, not '" + parser.value("format") + "'");
    const bool json = format == "json";
    if (parser.positionalArguments().size() != 1)
        return Fail(args.value(0) + ": give one log file");
    const QString logPath = parser.positionalArguments().at(0);
    QString csvPath = parser.value("output");
    if (csvPath.isEmpty()) {
        csvPath = logPath;
        if (csvPath.endsWith(".log", Qt::CaseInsensitive))
            csvPath.chop(4);
        csvPath += json ? ".json" : ".csv";
    }
    kvx::log::ExportResult result;
    try {
        result = kvx::log::ExportLogFile(logPath.toStdString(), kvx::log::StandardLiveDecoding(),
                                         json ? kvx::log::ExportFormat::Json : kvx::log::ExportFormat::Csv,
                                         csvPath.toStdString());
    } catch (const kvx::log::LogError& e) {
        std::fprintf(stderr, "kvx export: %s\n", e.what());
        return 1;
    }
    std::printf("%ld frames written to %s\n", result.frames, qPrintable(csvPath));
    if (!result.damage.empty()) {
        std::fprintf(stderr, "kvx export: stopped early: %s\n", result.damage.c_str());
        return 1;
    }
    return 0;
}

} // namespace kvx::cli
