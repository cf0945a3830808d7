#include "cli/Command.h"
#include "settings/SettingsStore.h"

#include <QApplication>
#include <cstdio>
#include <cstring>
#include <memory>
#include <exception>

namespace {

using kvx::cli::Command;
using kvx::cli::Commands;

void printCommandList()
{
    std::printf("Usage: kvx <command> [options]\n\n"
                "Korvenatronix OBD-II on the command line: every service of the window, headless, on a K-line\n"
                "cable or the virtual vehicle (--port sim).\n\nCommands:\n");
    for (const Command& c : Commands())
        std::printf("  %-10s %s\n", c.name.c_str(), c.summary.c_str());
    std::printf("\n'kvx <command> --help' (or 'kvx help <command>') describes a command and its options.\n"
                "'kvx --version' prints the version.\n");
}

const Command* find(const QString& name)
{
    for (const Command& c : Commands())
        if (QString::fromStdString(c.name) == name)
            return &c;
    return nullptr;
}

int unknownCommand(const QString& name)
{
    const std::string closest = kvx::cli::ClosestCommand(name.toStdString());
    std::fprintf(stderr, "kvx: '%s' is not a command", qPrintable(name));
    if (!closest.empty())
        std::fprintf(stderr, "; did you mean '%s'?", closest.c_str());
    std::fprintf(stderr, "\n'kvx --help' lists the commands.\n");
    return 2;
}

int run(const Command& command, QStringList args)
{
    args[0] = QStringLiteral("kvx ") + QString::fromStdString(command.name);
    try {
        return command.run(args);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "kvx %s: %s\n", command.name.c_str(), e.what());
        return 1;
    }
}

} // namespace

int main(int argc, char** argv)
{
    // Drawing a chart takes the widget classes; kvx draws on the offscreen platform, so it never
    // needs a display.
    const bool draws = argc > 1 && std::strcmp(argv[1], "graph") == 0;
    if (draws)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const std::unique_ptr<QCoreApplication> app =
        draws ? std::make_unique<QApplication>(argc, argv) : std::make_unique<QCoreApplication>(argc, argv);
    // To the system kvx is the window's program too: an installed kvx records into the same
    // user's data folder, where the window's player finds the logs.
    QCoreApplication::setOrganizationName(QString::fromLatin1(kvx::settings::kStoreName));
    QCoreApplication::setApplicationName(QString::fromLatin1(kvx::settings::kStoreName));
    QCoreApplication::setApplicationVersion(QStringLiteral(KVX_VERSION));
    QStringList args = QCoreApplication::arguments();
    const QString first = args.value(1);
    if (args.size() < 2 || first == "--help" || first == "-h" || (first == "help" && args.size() == 2)) {
        printCommandList();
        return 0;
    }
    if (first == "--version" || first == "-v") {
        std::printf("kvx %s\n", KVX_VERSION);
        return 0;
    }
    if (first == "help") {
        // "kvx help live" is "kvx live --help".
        const Command* command = find(args.at(2));
        return command ? run(*command, {args.at(0), QStringLiteral("--help")}) : unknownCommand(args.at(2));
    }
    const Command* command = find(first);
    if (!command)
        return unknownCommand(first);
    args.removeAt(1);
    return run(*command, args);
}
