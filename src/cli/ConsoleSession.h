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
#include <functional>
#include <memory>
#include <optional>

namespace kvx::cli {

// Message boxes become "Title: text" lines on stderr. A console has no events to let run; where
// the window would handle a click, kvx looks whether Ctrl+C asked a loop to stop.
class ConsoleShell : public Shell {
public:
    void messageBox(const std::string& title, const std::string& text, MessageIcon) override;
    void processEvents() override;

    // Runs at the next processEvents after the first Ctrl+C.
    void onInterrupt(std::function<void()> stop) { stop_ = std::move(stop); }

private:
    std::function<void()> stop_;
};

// Adds --port, --protocol and --interface, whose defaults are the settings store's (as the window
// connects with them), --trace, and the virtual vehicle's --virtual-time, --faults and --seed.
void AddConnectionOptions(QCommandLineParser& parser);

// Where a command connects, and on which clock.
struct PortChoice {
    int port = 0;
    ports::PortOptions options;
    std::unique_ptr<link::Clock> clock;
};

// Reads --port: "sim", a number 1-16 or a device path, the settings' port when not given, with
// the virtual vehicle's options. Says on stderr when it is the virtual vehicle. nullopt with the
// reason in problem when an option is wrong.
std::optional<PortChoice> PortFromOptions(const QCommandLineParser& parser, QString& problem);

// Reads --interface: the settings' Interface value it names; nullopt with the reason in problem.
std::optional<int> InterfaceFromOptions(const QCommandLineParser& parser, QString& problem);

// Says on stderr that the command could not connect, with the status bar's reason when it has one.
int ConnectionFailed(const QString& command, const QCommandLineParser& parser, const MainScreen& screen);

// A session on the console, set up as the window sets up its own at start-up: the settings from
// the store, every grid laid out, the generic tabs, the trouble-code descriptions loaded.
class ConsoleSession {
public:
    // Reads the connection options; returns nullptr with the reason in problem when one is wrong.
    static std::unique_ptr<ConsoleSession> FromOptions(const QCommandLineParser& parser, QString& problem);

    Session& session() { return session_; }
    MainScreen& screen() { return screen_; }

private:
    ConsoleSession(PortChoice choice, int protocol, int interface, bool trace);

    std::unique_ptr<link::Clock> clock_;
    link::LinkSession link_;
    TracePrinter printer_;
    MainScreen screen_;
    ConsoleShell shell_;
    Session session_;
};

} // namespace kvx::cli
