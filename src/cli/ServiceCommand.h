#pragma once

#include "cli/OutputFormat.h"

#include <QCommandLineParser>
#include <QStringList>
#include <functional>

namespace kvx {
struct Session;
}

namespace kvx::cli {

// One kvx command that runs a diagnostic service the way its button does.
struct ServiceCommand {
    QString description;
    // Adds the command's own options and arguments (the connection options are added for it).
    std::function<void(QCommandLineParser&)> addOptions;
    // Checks the parsed arguments before anything is sent; returns an error text, "" when fine.
    std::function<QString(const QCommandLineParser&)> check;
    // Runs on the connected session; prints what the window would show, or JSON lines; returns
    // the exit code.
    std::function<int(Session&, const QCommandLineParser&, OutputFormat)> run;
    // Whether the result can be printed as JSON lines (--format json).
    bool json = true;
};

// Parses --port (sim, 1-16 or a device path; the settings' port by default), --protocol (1-4)
// and --trace beside the command's own options, connects as the window's "OBD II GENERIC" does,
// runs the command and disconnects. Bad arguments, a failed connection and link faults end with
// a plain message on stderr and a non-zero code.
int RunServiceCommand(const QStringList& args, const ServiceCommand& command);

} // namespace kvx::cli
