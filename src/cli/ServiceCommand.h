#pragma once

#include "cli/OutputFormat.h"

#include <QCommandLineParser>
#include <QStringList>
#include <functional>

namespace kvx {
struct Session;
}

namespace kvx::cli {

// One kvx command that connects to a unit and runs a service the way its button does.
struct ServiceCommand {
    QString description;
    // Adds the command's own options and arguments (the connection options are added for it).
    std::function<void(QCommandLineParser&)> addOptions;
    // Checks the parsed arguments before anything is sent; returns an error text, "" when fine.
    std::function<QString(const QCommandLineParser&)> check;
    // Runs on the connected session; prints what the window would show, or the lines of a
    // format; returns the exit code.
    std::function<int(Session&, const QCommandLineParser&, OutputFormat)> run;
    // The formats --format offers besides text; none, no --format.
    QStringList formats = {QStringLiteral("json")};
    // The module the command connects with (a ModuleIndexValue); the generic one when not given.
    std::function<int(const QCommandLineParser&)> module = nullptr;
};

// Parses --port (sim, 1-16 or a device path; the settings' port by default), --protocol (1-4)
// and --trace beside the command's own options, connects as the window's module button does
// ("OBD II GENERIC" unless the command names another), runs the command and disconnects. Bad
// arguments, a failed connection and link faults end with a plain message on stderr and a
// non-zero code.
int RunServiceCommand(const QStringList& args, const ServiceCommand& command);

} // namespace kvx::cli
