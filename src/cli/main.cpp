#include "cli/Command.h"

#include <QCoreApplication>
#include <algorithm>
#include <cstdio>
#include <exception>

namespace kvx::cli {

std::vector<Command>& commands()
{
    static std::vector<Command> all;
    return all;
}

} // namespace kvx::cli

namespace {

int usage()
{
    std::fprintf(stderr, "usage: kvx <command> [options]\n\ncommands:\n");
    auto cmds = kvx::cli::commands();
    std::sort(cmds.begin(), cmds.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    for (const auto& c : cmds)
        std::fprintf(stderr, "  %-10s %s\n", c.name.c_str(), c.summary.c_str());
    std::fprintf(stderr, "\n'kvx <command> --help' describes a command's options.\n");
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName("kvx");
    QStringList args = QCoreApplication::arguments();
    if (args.size() < 2)
        return usage();
    const std::string name = args.at(1).toStdString();
    for (const auto& c : kvx::cli::commands()) {
        if (c.name != name)
            continue;
        args.removeAt(1);
        args[0] = QStringLiteral("kvx ") + QString::fromStdString(name);
        try {
            return c.run(args);
        } catch (const std::exception& e) {
            std::fprintf(stderr, "kvx %s: %s\n", name.c_str(), e.what());
            return 1;
        }
    }
    std::fprintf(stderr, "kvx: unknown command '%s'\n\n", name.c_str());
    return usage();
}
