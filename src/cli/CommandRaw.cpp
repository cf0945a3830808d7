#include "cli/Command.h"
#include "cli/TracePrinter.h"
#include "link/LinkSession.h"
#include "ports/WireFactory.h"
#include "settings/CommSettings.h"

#include <QCommandLineParser>
#include <cstdio>

namespace kvx::cli {

namespace {

int runRaw(const QStringList& args)
{
    QCommandLineParser p;
    p.setApplicationDescription("Wakes the unit up and sends each hex request, printing the request and the reply.");
    p.addHelpOption();
    p.addOption({"port", "sim (the virtual vehicle), a port number 1-16 or a device path.", "P", "sim"});
    p.addOption({"protocol", "1 ISO 9141-2, 2 KWP2000 slow init, 3 KWP2000 fast init, 4 try all.", "N", "4"});
    p.addOption({"p3", "Pause before each request, ms.", "ms", "300"});
    p.addOption({"p4", "Pause between request bytes, ms.", "ms", "10"});
    p.addOption({"trace", "Print every byte on the wire and the wake-up timings."});
    p.addPositionalArgument("HEX", "Requests with their three header bytes, e.g. 686AF10100.", "HEX...");
    p.process(args);

    ports::PortOptions options;
    const auto port = ports::parsePortArgument(p.value("port").toStdString(), options);
    if (!port) {
        std::fprintf(stderr, "kvx raw: --port takes sim, a number 1-16 or a device path.\n");
        return 2;
    }
    bool ok = false;
    const int protocol = p.value("protocol").toInt(&ok);
    if (!ok || protocol < 1 || protocol > 4) {
        std::fprintf(stderr, "kvx raw: --protocol takes 1, 2, 3 or 4.\n");
        return 2;
    }
    if (p.positionalArguments().isEmpty()) {
        std::fprintf(stderr, "kvx raw: give at least one request, e.g. 686AF10100.\n");
        return 2;
    }

    link::SteadyClock clock;
    link::LinkSession link(ports::makeWireFactory(clock, options), clock);
    TracePrinter printer(stdout);
    if (p.isSet("trace"))
        link.setTraceSink(&printer);
    link.SetP3Delay(p.value("p3").toInt());
    link.SetP4Delay(p.value("p4").toInt());

    const CommSettings defaults;
    std::string result;
    int used = 0;
    for (int proto = protocol == 4 ? 1 : protocol; proto <= (protocol == 4 ? 3 : protocol); ++proto) {
        std::printf("waking the unit, protocol %d...\n", proto);
        std::fflush(stdout);
        if (link.InitializeEcu("33", defaults.BaudRate, *port, proto, "", false, result)) {
            used = proto;
            break;
        }
    }
    if (!used) {
        std::printf("no unit answered the wake-up\n");
        return 1;
    }
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

const RegisterCommand kRaw{{"raw", "send hex requests to a unit and print the replies", runRaw}};

} // namespace

} // namespace kvx::cli
