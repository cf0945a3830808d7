#include "cli/Command.h"
#include "cli/CommandLine.h"
#include "log/LogFile.h"
#include "log/LogGraph.h"
#include "session/GraphModel.h"
#include "ui/GraphChart.h"

#include <QCommandLineParser>
#include <QImageWriter>
#include <QSaveFile>
#include <cstdio>

namespace kvx::cli {

int RunGraph(const QStringList& args)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("Draws a live-data log as a chart into a PNG picture, without a display: the "
                                     "first four numeric items, or those given, over the log's receive time.");
    parser.addHelpOption();
    parser.addPositionalArgument("FILE.log", "The log to draw.");
    parser.addOption({{"o", "output"}, "The PNG picture to write.", "FILE.png"});
    parser.addOption({"pids", "The items to draw, at most 8, separated by commas (0C,0D; 1101; C101 0).", "LIST"});
    parser.addOption({"us", "US units rather than metric."});
    parser.addOption({"size", WithDefault("The picture's width and height in pixels.", "1200x700"), "WxH", "1200x700"});
    if (const auto code = ParseCommandLine(parser, args))
        return *code;
    if (parser.positionalArguments().size() != 1)
        return Fail(args.value(0) + ": give one log file");
    if (parser.value("output").isEmpty())
        return Fail(args.value(0) + ": give the picture's file with -o FILE.png");
    const QStringList size = parser.value("size").split('x');
    const int width = size.value(0).toInt(), height = size.value(1).toInt();
    if (size.size() != 2 || width < 200 || height < 150 || width > 10000 || height > 10000)
        return Fail(args.value(0) + ": --size takes WIDTHxHEIGHT, from 200x150 to 10000x10000");

    GraphModel model;
    model.setUs(parser.isSet("us"));
    std::vector<std::string> wanted;
    for (const QString& id : parser.value("pids").split(',', Qt::SkipEmptyParts))
        wanted.push_back(id.trimmed().toUpper().toStdString());
    if (wanted.size() > GraphModel::kMaxSeries)
        return Fail(args.value(0) + ": --pids takes at most 8 items");
    if (!wanted.empty())
        model.setPlotted(wanted);
    log::LogGraphResult read;
    try {
        read = log::LoadLogIntoGraph(parser.positionalArguments().at(0).toStdString(), log::StandardLiveDecoding(), model);
    } catch (const log::LogError& e) {
        std::fprintf(stderr, "kvx graph: %s\n", e.what());
        return 1;
    }
    const bool timed = read.timed;
    bool missing = false;
    for (const std::string& id : wanted)
        if (!model.series(id)) {
            std::fprintf(stderr, "kvx graph: the log holds no numeric value of %s\n", id.c_str());
            missing = true;
        }
    if (model.plotted().empty()) {
        const char* why = read.frames == 0 ? "the log holds no frames"
                          : wanted.empty() ? "the log holds no numeric value"
                                           : "the log holds no numeric value of the items asked for";
        std::fprintf(stderr, "kvx graph: nothing to draw: %s\n", why);
        return 1;
    }

    ui::GraphChart chart(model);
    chart.setTimeTitle(timed ? QStringLiteral("Time (s)") : QStringLiteral("Frame"));
    // Never shown: the chart paints itself into the picture at the size asked for.
    chart.resize(width, height);
    chart.showAll();
    const QString output = parser.value("output");
    // Written beside it under another name and renamed into place: a failed write leaves
    // whatever stood there.
    QSaveFile file(output);
    QImageWriter writer(&file, "png");
    if (!file.open(QIODevice::WriteOnly) || !writer.write(chart.grab().toImage()) || !file.commit()) {
        const QString why = file.error() != QFileDevice::NoError ? file.errorString() : writer.errorString();
        std::fprintf(stderr, "kvx graph: cannot write %s: %s\n", qPrintable(output), qPrintable(why));
        return 1;
    }
    std::printf("%zu items drawn to %s\n", model.plotted().size(), qPrintable(output));
    if (!read.damage.empty()) {
        std::fprintf(stderr, "kvx graph: drew the %ld frames before the damage: %s\n", read.frames,
                     read.damage.c_str());
        return 1;
    }
    // The others are drawn, but not all that was asked for.
    return missing ? 1 : 0;
}

} // namespace kvx::cli
