#include "cli/CommandLine.h"

#include <QCoreApplication>
#include <cstdio>

namespace kvx::cli {

namespace {

// The parser names the executable's path in its usage line; the user typed "kvx <command>".
QString helpText(const QCommandLineParser& parser, const QString& command)
{
    QString text = parser.helpText();
    const QString program = QCoreApplication::arguments().value(0);
    const QString usage = QStringLiteral("Usage: ");
    if (text.startsWith(usage + program))
        text.replace(usage.size(), program.size(), command);
    return text;
}

} // namespace

std::optional<int> ParseCommandLine(QCommandLineParser& parser, const QStringList& args)
{
    const QString command = args.value(0);
    if (!parser.parse(args))
        return Fail(command + ": " + parser.errorText() + "\n'" + command + " --help' describes the options.");
    if (parser.isSet("help")) {
        std::printf("%s", qPrintable(helpText(parser, command)));
        return 0;
    }
    return std::nullopt;
}

int Fail(const QString& text)
{
    std::fprintf(stderr, "%s\n", qPrintable(text));
    return 2;
}

QString WithDefault(const QString& description, const QString& defaultValue)
{
    QString text = description;
    const bool sentence = text.endsWith(QLatin1Char('.'));
    if (sentence)
        text.chop(1);
    return text + QStringLiteral(" (default: ") + defaultValue + QStringLiteral(")") + (sentence ? "." : "");
}

} // namespace kvx::cli
