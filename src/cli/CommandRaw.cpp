#include "cli/Command.h"
#include "cli/CommandLine.h"
#include "cli/ConsoleSession.h"
#include "cli/TracePrinter.h"
#include "link/Hex.h"
#include "link/LinkSession.h"
#include "link/Protocol.h"
#include "link/ProtocolBytes.h"
#include "ports/WireFactory.h"
#include "session/CommSettings.h"
#include "settings/SettingsStore.h"

#include <QCommandLineParser>
#include <cstdio>

namespace kvx::cli {

int RunRaw(const QStringList& args)
{
    QCommandLineParser p;
    p.setApplicationDescription("Wakes the unit up and sends each hex request, printing the request and the reply.");
    p.addHelpOption();
    AddConnectionOptions(p);
    p.addOption({"p3", WithDefault("Pause before each request, ms.", "300"), "ms", "300"});
    p.addOption({"p4", WithDefault("Pause between request bytes, ms.", "10"), "ms", "10"});
    p.addPositionalArgument("HEX", "Requests with their three header bytes, e.g. 686AF10100.", "HEX...");
    if (const auto code = ParseCommandLine(p, args))
        return *code;

    const QString command = args.value(0);
    bool ok = false;
    const int protocol = p.value("protocol").toInt(&ok);
    if (!ok || protocol < 1 || protocol > link::kLastProtocol)
        return Fail(command + ": --protocol takes 1 to 8, not '" + p.value("protocol") + "'");
    if (p.positionalArguments().isEmpty())
        return Fail(command + ": give at least one request, e.g. 686AF10100");
    // A request that cannot be sent is said before the unit is woken for nothing.
    for (const QString& arg : p.positionalArguments()) {
        const auto bytes = link::fromHex(arg.toStdString());
        if (!bytes)
            return Fail(command + ": the request '" + arg + "' is not hex byte pairs");
        if (bytes->size() <= link::kline::kIsoHeaderSize)
            return Fail(command + ": the request '" + arg + "' needs three header bytes and a service, e.g. 686AF10100");
    }
    QString problem;
    const auto interface = InterfaceFromOptions(p, problem);
    if (!interface)
        return Fail(command + ": " + problem);
    const auto port = PortFromOptions(p, problem);
    if (!port)
        return Fail(command + ": " + problem);

    link::LinkSession link(ports::makeWireFactory(*port->clock, port->options), *port->clock);
    TracePrinter printer(stdout);
    if (p.isSet("trace"))
        link.setTraceSink(&printer);
    link.SetP3Delay(p.value("p3").toInt());
    link.SetP4Delay(p.value("p4").toInt());
    CommSettings stored;
    settings::ReadCommSettings(stored);
    link.SetInterface(*interface == kElm327Interface ? link::InterfaceType::Elm327 : link::InterfaceType::KLineCable,
                      stored.AdapterBaud);

    const CommSettings defaults;
    std::string result;
    int used = 0;
    // An adapter that searches the protocols itself is asked once for "Try All".
    const bool oneByOne = protocol == link::TryAll && !link.SearchesProtocols();
    for (int proto = oneByOne ? 1 : protocol; proto <= (oneByOne ? 3 : protocol); ++proto) {
        std::printf("waking the unit, protocol %d...\n", proto);
        std::fflush(stdout);
        if (link.InitializeEcu("33", defaults.BaudRate, port->port, proto, "", false, result)) {
            used = link.ProtocolInUse();
            break;
        }
    }
    if (!used) {
        std::printf("no unit answered the wake-up\n");
        return 1;
    }
    // An ELM327 keeps the key bytes to itself, and CAN has none: the protocol is named instead.
    if (result.empty())
        std::printf("awake on protocol %d (%s)\n", used, link::ProtocolName(used).c_str());
    else
        std::printf("awake on protocol %d, key bytes %s\n", used, result.c_str());
    for (const QString& arg : p.positionalArguments()) {
        const std::string request = arg.toUpper().toStdString();
        const std::string frame = link.EncodeRequest(request);
        std::printf("request %s\n", frame.c_str());
        std::fflush(stdout);
        const std::string reply = link.DecodeReply(link.Transact(frame));
        std::printf("reply   %s\n", reply.empty() ? "(no answer)" : reply.c_str());
    }
    link.ClosePort(0);
    return 0;
}

} // namespace kvx::cli
