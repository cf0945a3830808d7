#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <optional>

namespace kvx::cli {

// Parses args (argv[0] is "kvx <command>"); returns the exit code when the command ends here: 0
// after printing --help on stdout, 2 after a usage error on stderr.
std::optional<int> ParseCommandLine(QCommandLineParser& parser, const QStringList& args);

// Prints text on stderr and returns the exit code of a usage error.
int Fail(const QString& text);

// A description with its default spelled out, since the parser's help does not show defaults.
QString WithDefault(const QString& description, const QString& defaultValue);

} // namespace kvx::cli
