#pragma once

#include <QStringList>
#include <functional>
#include <string>
#include <vector>

namespace kvx::cli {

// One kvx sub-command. Each command file registers itself, so adding one touches no other file.
struct Command {
    std::string name;
    std::string summary;
    // Receives the arguments after the command name (argv[0] is "kvx <name>"); returns the exit code.
    std::function<int(const QStringList& args)> run;
};

std::vector<Command>& commands();

struct RegisterCommand {
    explicit RegisterCommand(Command c) { commands().push_back(std::move(c)); }
};

} // namespace kvx::cli
