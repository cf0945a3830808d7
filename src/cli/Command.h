#pragma once

#include <QStringList>
#include <string>
#include <vector>

namespace kvx::cli {

// One kvx sub-command. run receives the arguments after the command name, with argv[0] replaced
// by "kvx <name>", and returns the exit code.
struct Command {
    std::string name;
    std::string summary;
    int (*run)(const QStringList& args);
};

// Every command, by name. Listed in one table (CommandTable.cpp) rather than registered by each
// file's static initialisers, which a linker drops once the files live in a library.
const std::vector<Command>& Commands();

// The command whose name is nearest to a mistyped one; empty when none is near enough to be meant.
std::string ClosestCommand(const std::string& typed);

int RunClear(const QStringList& args);
int RunDecode(const QStringList& args);
int RunDtc(const QStringList& args);
int RunExport(const QStringList& args);
int RunFreeze(const QStringList& args);
int RunGraph(const QStringList& args);
int RunInfo(const QStringList& args);
int RunLive(const QStringList& args);
int RunLogInfo(const QStringList& args);
int RunMonitor(const QStringList& args);
int RunO2(const QStringList& args);
int RunRaw(const QStringList& args);
int RunSim(const QStringList& args);

} // namespace kvx::cli
