#include "cli/ConsoleSession.h"

#include "cli/CommandLine.h"
#include "cli/Interrupt.h"
#include "cli/VehicleOption.h"
#include "data/DtcDescriptions.h"
#include "data/GridLayouts.h"
#include "data/TabLayout.h"
#include "data/VehicleLists.h"
#include "garage/ProgramFolders.h"
#include "link/SerialWire.h"
#include "settings/SettingsStore.h"

#include <cstdio>

namespace kvx::cli {

namespace {

// The settings' port numbers that name serial devices.
constexpr int kFirstSerialPort = 1;
constexpr int kLastSerialPort = 16;

CommSettings storedSettings()
{
    CommSettings settings;
    settings::ReadCommSettings(settings);
    return settings;
}

QString portArgument(int port)
{
    return port == kVirtualVehiclePort ? QStringLiteral("sim") : QString::number(port);
}

} // namespace

void ConsoleShell::messageBox(const std::string& title, const std::string& text, MessageIcon)
{
    std::fprintf(stderr, "%s: %s\n", title.c_str(), text.c_str());
}

void ConsoleShell::processEvents()
{
    if (stop_ && InterruptRequested())
        stop_();
}

void AddConnectionOptions(QCommandLineParser& parser)
{
    const CommSettings stored = storedSettings();
    QString port = portArgument(stored.PortNumber);
    if (stored.PortNumber >= kFirstSerialPort && stored.PortNumber <= kLastSerialPort)
        port += QStringLiteral(", ") + QString::fromStdString(link::serialDeviceForPort(stored.PortNumber));
    parser.addOption({"port",
                      WithDefault("sim (the virtual vehicle), a serial port number 1-16 or a device path.",
                                  "the settings' port, now " + port),
                      "P", portArgument(stored.PortNumber)});
    parser.addOption({"protocol",
                      WithDefault("1 ISO9141 Slow, 2 KW2000 Slow, 3 KW2000 Fast, 4 Try All; with an ELM327 also "
                                  "5 CAN 11bit 500k, 6 CAN 29bit 500k, 7 CAN 11bit 250k, 8 CAN 29bit 250k.",
                                  "the settings' protocol, now " + QString::number(stored.ProtocolNumber)),
                      "N", QString::number(stored.ProtocolNumber)});
    parser.addOption({"interface",
                      WithDefault("kline (a K-line cable) or elm327 (an ELM327 adapter).",
                                  QStringLiteral("the settings' interface, now ") +
                                      (stored.Interface == kElm327Interface ? "elm327" : "kline")),
                      "TYPE", stored.Interface == kElm327Interface ? "elm327" : "kline"});
    parser.addOption({"trace", "Print every byte on the wire and the wake-up timings; with an ELM327, the "
                               "commands, the adapter's lines and its prompts."});
    parser.addOption({"virtual-time", "With --port sim: run the vehicle on virtual time, without waiting (a pass "
                                      "in milliseconds, the same values every run)."});
    parser.addOption({"faults", WithDefault("With --port sim: the share of requests and wake-ups that meet a "
                                            "fault (silence, noise, a dropped session...), 0 to 1.", "0"),
                      "RATE", "0"});
    parser.addOption({"seed", WithDefault("With --port sim: the seed of the vehicle and its faults.", "1"), "N", "1"});
    parser.addOption({"vehicle", WithDefault("With --port sim: the car, by its name in the garage ('kvx sim --list' "
                                             "names them) or a profile file.", "the built-in car"),
                      "NAME|FILE"});
}

std::optional<PortChoice> PortFromOptions(const QCommandLineParser& parser, QString& problem)
{
    PortChoice choice;
    const QString text = parser.value("port");
    const std::optional<int> port = ports::parsePortArgument(text.toStdString(), choice.options);
    if (!port) {
        problem = parser.isSet("port")
                      ? "--port takes sim, a number 1-16 or a device path, not '" + text + "'"
                      : "the settings' port " + text + " is not one kvx can open; give --port sim, 1-16 or a device path";
        return std::nullopt;
    }
    choice.port = *port;
    const bool vehicle = choice.port == kVirtualVehiclePort;
    for (const char* option : {"virtual-time", "faults", "seed", "vehicle"})
        if (parser.isSet(option) && !vehicle) {
            problem = QStringLiteral("--") + option + " is for the virtual vehicle (--port sim)";
            return std::nullopt;
        }
    bool ok = false;
    const double rate = parser.value("faults").toDouble(&ok);
    if (!ok || rate < 0.0 || rate > 1.0) {
        problem = "--faults takes a share from 0 to 1, not '" + parser.value("faults") + "'";
        return std::nullopt;
    }
    if (rate > 0.0 && parser.value("interface") == "elm327") {
        problem = "--faults reaches the virtual vehicle's K-line bus only; the emulated ELM327 answers without faults";
        return std::nullopt;
    }
    const std::uint64_t seed = parser.value("seed").toULongLong(&ok);
    if (!ok) {
        problem = "--seed takes a whole number, not '" + parser.value("seed") + "'";
        return std::nullopt;
    }
    if (parser.isSet("vehicle")) {
        const auto car = VehicleFromOption(parser.value("vehicle"), problem);
        if (!car)
            return std::nullopt;
        choice.options.vehicle = sim::configFor(*car, seed);
    }
    choice.options.vehicle.seed = seed;
    choice.options.vehicle.faults.seed = seed;
    choice.options.vehicle.faults.rate = rate;
    if (parser.isSet("virtual-time"))
        choice.clock = std::make_unique<link::VirtualClock>();
    else
        choice.clock = std::make_unique<link::SteadyClock>();
    if (vehicle)
        std::fprintf(stderr, "kvx: on the VIRTUAL VEHICLE, not a car\n");
    return choice;
}

std::optional<int> InterfaceFromOptions(const QCommandLineParser& parser, QString& problem)
{
    const QString name = parser.value("interface");
    if (name == "kline")
        return kKLineCableInterface;
    if (name == "elm327")
        return kElm327Interface;
    problem = "--interface takes kline or elm327, not '" + name + "'";
    return std::nullopt;
}

int ConnectionFailed(const QString& command, const QCommandLineParser& parser, const MainScreen& screen)
{
    const std::string& status = screen.StatusBar1.text(1);
    std::fprintf(stderr, "%s: no connection on port %s%s%s\n", qPrintable(command), qPrintable(parser.value("port")),
                 status.empty() ? "" : ": ", status.c_str());
    return 1;
}

std::unique_ptr<ConsoleSession> ConsoleSession::FromOptions(const QCommandLineParser& parser, QString& problem)
{
    bool ok = false;
    const int protocol = parser.value("protocol").toInt(&ok);
    if (!ok || protocol < 1 || protocol > link::kLastProtocol) {
        problem = "--protocol takes 1 to " + QString::number(link::kLastProtocol) + ", not '" + parser.value("protocol") + "'";
        return nullptr;
    }
    const std::optional<int> interface = InterfaceFromOptions(parser, problem);
    if (!interface)
        return nullptr;
    std::optional<PortChoice> choice = PortFromOptions(parser, problem);
    if (!choice)
        return nullptr;
    return std::unique_ptr<ConsoleSession>(
        new ConsoleSession(std::move(*choice), protocol, *interface, parser.isSet("trace")));
}

ConsoleSession::ConsoleSession(PortChoice choice, int protocol, int interface, bool trace)
    : clock_(std::move(choice.clock)),
      link_(ports::makeWireFactory(*clock_, choice.options), *clock_),
      printer_(stdout),
      session_(link_, screen_, shell_)
{
    if (trace)
        link_.setTraceSink(&printer_);
    // The window's start-up: the stored settings, their timings pushed into the link; the
    // command line chooses only the port, the protocol and the interface.
    settings::LoadCommSettings(session_);
    CommSettings& settings = session_.settings;
    settings.Interface = interface;
    settings::PushInterface(session_);
    settings.PortNumber = choice.port;
    settings.ProtocolNumber = protocol;
    settings.TryAllProtocols = protocol == link::TryAll;
    shell_.onInterrupt([this] { session_.Busy = false; });
    data::FillYearList(screen_);
    data::LayoutLiveDataGrid(screen_);
    data::LayoutO2SensorGrid(screen_);
    data::LayoutMonitorTestGrid(screen_);
    data::BuildTabs(screen_, data::ModuleTabs(ModuleGeneric));
    data::LoadDtcDescriptions(garage::runFolders().shipped.toStdString(), session_.DtcDescriptions, shell_);
    session_.CodesWithoutNumberListed = true;
}

} // namespace kvx::cli
