#include "KvxProcess.h"

namespace kvx::cli::test {
namespace {

const QStringList kCommands{"clear", "decode", "dtc", "export", "freeze", "info",
                            "live", "log-info", "monitor", "o2", "raw", "sim"};

TEST(CommandLine, ListsEveryCommandOrTheVersionOnStdoutWithExitZero)
{
    const Kvx kvx;
    for (const QStringList& args : {QStringList{}, QStringList{"--help"}, QStringList{"help"}}) {
        const Result run = kvx.run(args);
        EXPECT_EQ(run.code, 0) << args.join(' ').toStdString();
        EXPECT_TRUE(run.err.isEmpty()) << run.err.toStdString();
        for (const QString& command : kCommands)
            EXPECT_TRUE(run.out.contains("\n  " + command + " ")) << command.toStdString();
    }
    const Result version = kvx.run({"--version"});
    EXPECT_EQ(version.code, 0);
    EXPECT_EQ(version.out, QStringLiteral("kvx " KVX_VERSION "\n"));
}

TEST(CommandLine, EveryCommandsHelpNamesTheCommandAndItsDefaults)
{
    const Kvx kvx;
    for (const QString& command : kCommands) {
        const Result run = kvx.run({command, "--help"});
        EXPECT_EQ(run.code, 0) << command.toStdString();
        EXPECT_TRUE(run.out.startsWith("Usage: kvx " + command + " [options]")) << run.out.toStdString();
        EXPECT_EQ(kvx.run({"help", command}).out, run.out) << command.toStdString();
    }
    const Result live = kvx.run({"live", "--help"});
    EXPECT_TRUE(live.out.contains("(default: 0)")) << live.out.toStdString();
    EXPECT_TRUE(live.out.contains("(default: generic)"));
    EXPECT_TRUE(kvx.run({"sim", "--help"}).out.contains("(default: 1)"));
}

// Each is refused before anything is opened: exit code 2, the reason on stderr, nothing on stdout.
TEST(CommandLine, UsageErrorsExitTwoWithTheReasonOnStderr)
{
    const Kvx kvx;
    const struct {
        QStringList args;
        const char* said;
    } cases[] = {
        {{"lve"}, "did you mean 'live'?"},
        {{"monitr"}, "did you mean 'monitor'?"},
        {{"xyzzy"}, "'xyzzy' is not a command"},
        {{"help", "lvie"}, "did you mean 'live'?"},
        {{"live", "--count", "-1"}, "--count takes a number of passes"},
        {{"live", "--count", "many"}, "--count takes a number of passes"},
        {{"live", "--format", "xml"}, "--format takes text or csv or json"},
        {{"live", "--module", "honda"}, "--module is generic"},
        {{"live", "--port", "sim", "0C", "RPM"}, "a PID is two hex digits"},
        {{"live", "--speed"}, "Unknown option 'speed'"},
        {{"dtc", "--format", "csv"}, "--format takes text or json"},
        {{"clear", "--format", "json"}, "Unknown option 'format'"},
        {{"info", "--port", "sim", "speed"}, "give one of readiness, obd, o2, vin"},
        {{"monitor", "--port", "sim", "--year", "1997"}, "--year needs --make"},
        {{"dtc", "--port", "17"}, "--port takes sim, a number 1-16 or a device path"},
        {{"dtc", "--port", "sim", "--protocol", "9"}, "--protocol takes 1 to 8"},
        {{"dtc", "--port", "sim", "--interface", "usb"}, "--interface takes kline or elm327"},
        {{"dtc", "--port", "3", "--virtual-time"}, "--virtual-time is for the virtual vehicle"},
        {{"live", "--port", "sim", "--faults", "1.5"}, "--faults takes a share from 0 to 1"},
        {{"raw", "--port", "sim"}, "give at least one request"},
        {{"raw", "--port", "sim", "686AF10100", "7DF0100"}, "the request '7DF0100' is not hex byte pairs"},
        {{"raw", "--port", "sim", "0100"}, "the request '0100' needs three header bytes and a service"},
        {{"sim"}, "give --pty"},
        {{"sim", "--pty", "--faults", "2"}, "--faults takes a share from 0 to 1"},
        {{"decode"}, "give at least one message"},
    };
    for (const auto& c : cases) {
        const Result run = kvx.run(c.args);
        const std::string args = c.args.join(' ').toStdString();
        EXPECT_EQ(run.code, 2) << args;
        EXPECT_TRUE(run.err.contains(c.said)) << args << ": " << run.err.toStdString();
        EXPECT_FALSE(run.err.contains("VIRTUAL VEHICLE")) << args;
        EXPECT_TRUE(run.out.isEmpty()) << args << ": " << run.out.toStdString();
    }
}

} // namespace
} // namespace kvx::cli::test
