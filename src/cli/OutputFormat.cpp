#include "cli/OutputFormat.h"

#include "cli/CommandLine.h"
#include "session/GridModel.h"

#include <QJsonDocument>
#include <cstdio>

namespace kvx::cli {

namespace {

QString jsonKey(const std::string& caption)
{
    QString key = Utf8(caption).toLower();
    for (QChar& c : key)
        if (!c.isLetterOrNumber())
            c = QLatin1Char('_');
    return key;
}

} // namespace

void AddFormatOption(QCommandLineParser& parser, const QStringList& others)
{
    QStringList choices{"text (as the window shows it)"};
    if (others.contains("csv"))
        choices << "csv (a heading line, then a line per item)";
    if (others.contains("json"))
        choices << "json (one JSON object per line)";
    parser.addOption({"format", WithDefault(choices.join(", ") + ".", "text"), "F", "text"});
}

std::optional<OutputFormat> FormatFromOptions(const QCommandLineParser& parser, const QStringList& others,
                                              QString& problem)
{
    const QString format = parser.value("format").toLower();
    if (format == "text")
        return OutputFormat::Text;
    if (others.contains(format))
        return format == "csv" ? OutputFormat::Csv : OutputFormat::Json;
    problem = "--format takes text or " + others.join(" or ") + ", not '" + parser.value("format") + "'";
    return std::nullopt;
}

void PrintJsonLine(const QJsonObject& object)
{
    std::printf("%s\n", QJsonDocument(object).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
}

QString Utf8(const std::string& text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void PrintGridJson(const GridModel& grid)
{
    for (int row = 1; row < grid.rows(); ++row) {
        QJsonObject object;
        for (int col = 0; col < grid.cols(); ++col)
            object.insert(jsonKey(grid.text(0, col)), Utf8(grid.text(row, col)));
        PrintJsonLine(object);
    }
}

} // namespace kvx::cli
