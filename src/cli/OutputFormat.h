#pragma once

#include <QCommandLineParser>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <optional>

namespace kvx {
class GridModel;
}

namespace kvx::cli {

// How a command prints its result: as the window shows it, or for scripts.
enum class OutputFormat { Text, Csv, Json };

// Adds --format, taking "text" (the default) or one of the others given ("csv", "json").
void AddFormatOption(QCommandLineParser& parser, const QStringList& others);

// The chosen format; nullopt with the reason in problem when it is not one the option takes.
std::optional<OutputFormat> FormatFromOptions(const QCommandLineParser& parser, const QStringList& others,
                                              QString& problem);

// One object on one line of stdout (JSON Lines), so a script can read results as they come.
void PrintJsonLine(const QJsonObject& object);

// A text as the JSON strings carry it (the models hold UTF-8).
QString Utf8(const std::string& text);

// One JSON line per row of a grid below its heading row, keyed by the heading's captions in lower
// case with other characters than letters and digits as "_" ("PASS/FAIL" becomes "pass_fail").
void PrintGridJson(const GridModel& grid);

} // namespace kvx::cli
