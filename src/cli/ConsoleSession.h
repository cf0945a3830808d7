#pragma once

#include "cli/TracePrinter.h"
#include "link/Clock.h"
#include "link/LinkSession.h"
#include "ports/WireFactory.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

#include <QCommandLineParser>
#include <QString>
#include <memory>
#include <optional>

namespace kvx::cli {

// Message boxes become "Title: text" lines on stderr; a console has no events to let run.
class ConsoleShell : public Shell {
public:
    void messageBox(const std::string& title, const std::string& text, MessageIcon) override;
    void processEvents() override {}
};

// Adds --port, --protocol and --trace, the options of every command that opens a session.
void AddConnectionOptions(QCommandLineParser& parser);

// A session on the console, set up as the window sets up its own at start-up: settings with the
// default timings, every grid laid out, the generic tabs, the trouble-code descriptions loaded.
class ConsoleSession {
public:
    // Reads the connection options; returns nullptr with the reason in problem when one is wrong.
    static std::unique_ptr<ConsoleSession> FromOptions(const QCommandLineParser& parser, QString& problem);

    Session& session() { return session_; }
    MainScreen& screen() { return screen_; }

private:
    ConsoleSession(const ports::PortOptions& options, int port, int protocol, bool trace);

    link::SteadyClock clock_;
    link::LinkSession link_;
    TracePrinter printer_;
    MainScreen screen_;
    ConsoleShell shell_;
    Session session_;
};

// Parses args; returns the exit code when the command ends here (a usage error or --help).
std::optional<int> ParseCommandLine(QCommandLineParser& parser, const QStringList& args);

// Prints text on stderr and returns the exit code of a usage error.
int Fail(const QString& text);

} // namespace kvx::cli
