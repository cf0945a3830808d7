#include "cli/Command.h"
#include "cli/CommandLine.h"
#include "cli/VehicleOption.h"
#include "garage/Garage.h"
#include "link/Clock.h"
#include "sim/Elm327Adapter.h"
#include "sim/VirtualVehicle.h"

#include <QCommandLineParser>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace kvx::cli {

namespace {

// The pseudo-terminal's controller side, raw, with the device side held open so the controller
// never sees a hang-up while no program has the device open.
struct Pty {
    int master = -1;
    int keepOpen = -1;
    std::string path;

    ~Pty()
    {
        if (keepOpen >= 0)
            ::close(keepOpen);
        if (master >= 0)
            ::close(master);
    }
};

bool openPty(Pty& pty)
{
    pty.master = posix_openpt(O_RDWR | O_NOCTTY);
    if (pty.master < 0 || grantpt(pty.master) != 0 || unlockpt(pty.master) != 0)
        return false;
    const char* name = ptsname(pty.master);
    if (!name)
        return false;
    pty.path = name;
    pty.keepOpen = ::open(name, O_RDWR | O_NOCTTY);
    if (pty.keepOpen < 0)
        return false;
    termios t{};
    if (tcgetattr(pty.keepOpen, &t) != 0)
        return false;
    cfmakeraw(&t);
    return tcsetattr(pty.keepOpen, TCSANOW, &t) == 0;
}

bool writeAll(int fd, const link::Bytes& bytes)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}

// Serves one face of the car on a new pseudo-terminal until the process is stopped: the K-line
// bus, or an ELM327 in front of the car's units.
template <typename Face>
int serve(sim::VehicleConfig config)
{
    Pty pty;
    if (!openPty(pty)) {
        std::fprintf(stderr, "kvx sim: could not open a pseudo-terminal: %s\n", std::strerror(errno));
        return 1;
    }
    link::SteadyClock clock;
    config.noBreaks = true;
    Face face(clock, std::move(config));
    std::printf("%s\n", pty.path.c_str());
    std::fflush(stdout);

    std::uint8_t buf[256];
    for (;;) {
        // Sleep in poll until the tester writes or the car has something to send.
        int timeoutMs = -1;
        if (const auto next = face.nextEvent())
            timeoutMs = static_cast<int>(std::max<link::Micros>(0, (*next - clock.now() + 999) / 1000));
        pollfd p{pty.master, POLLIN, 0};
        const int ready = ::poll(&p, 1, timeoutMs);
        if (ready < 0 && errno != EINTR) {
            std::fprintf(stderr, "kvx sim: waiting on the pseudo-terminal failed: %s\n", std::strerror(errno));
            return 1;
        }
        if (ready > 0 && (p.revents & POLLIN)) {
            const ssize_t n = ::read(pty.master, buf, sizeof buf);
            if (n > 0)
                face.testerWrite(link::Bytes(buf, buf + n));
        }
        if constexpr (requires { face.settle(clock.now()); })
            face.settle(clock.now());
        if (!writeAll(pty.master, face.takeReceived())) {
            std::fprintf(stderr, "kvx sim: writing to the pseudo-terminal failed: %s\n", std::strerror(errno));
            return 1;
        }
    }
}

const char* busName(sim::Bus bus)
{
    switch (bus) {
    case sim::Bus::KLine: return "K-line";
    case sim::Bus::Can11At500: return "CAN 11-bit 500k";
    case sim::Bus::Can29At500: return "CAN 29-bit 500k";
    case sim::Bus::Can11At250: return "CAN 11-bit 250k";
    case sim::Bus::Can29At250: return "CAN 29-bit 250k";
    }
    return "";
}

// One car a line: its name, its bus, then what it stands for; a file that does not load is named
// on stderr and makes the exit code 1.
int listGarage()
{
    const garage::GarageListing listing = garage::listGarage(garage::garageFolder());
    qsizetype width = 0;
    int busWidth = 0;
    for (const auto& car : listing.cars) {
        width = std::max(width, car.name.size());
        busWidth = std::max(busWidth, static_cast<int>(std::strlen(busName(car.bus))));
    }
    for (const auto& car : listing.cars)
        std::printf("%s  %-*s  %s\n", qPrintable(car.name.leftJustified(width)), busWidth, busName(car.bus),
                    qPrintable(car.comment));
    for (const QString& problem : listing.problems)
        std::fprintf(stderr, "kvx sim: %s\n", qPrintable(problem));
    if (listing.cars.empty() && listing.problems.isEmpty())
        std::fprintf(stderr, "kvx sim: no cars in %s\n", qPrintable(garage::garageFolder()));
    return listing.problems.isEmpty() && !listing.cars.empty() ? 0 : 1;
}

} // namespace

int RunSim(const QStringList& args)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Serves the virtual vehicle on a pseudo-terminal and prints its path; K-line software opened on that path "
        "talks to the chosen car (the built-in one: an engine unit 10 and a gearbox unit 18), on the real clock, "
        "until Ctrl+C. With --elm327 the car sits behind an emulated ELM327 adapter (38400 baud), which reaches "
        "CAN cars too.");
    parser.addHelpOption();
    parser.addOption({"pty", "Serve on a new pseudo-terminal (the only place kvx serves the vehicle)."});
    parser.addOption({"elm327", "Serve the car through an emulated ELM327 adapter rather than as a K-line bus."});
    parser.addOption({"vehicle", WithDefault("The car: its name in the garage or a profile file.", "the built-in car"),
                      "NAME|FILE"});
    parser.addOption({"list", "List the cars of the garage, one a line: its name, its bus (K-line or CAN), then what "
                              "it stands for."});
    parser.addOption({"seed", WithDefault("Seed of the vehicle and its fault plan.", "1"), "N", "1"});
    parser.addOption({"faults", WithDefault("Share of requests that meet a fault, 0 to 1.", "0"), "RATE", "0"});
    if (const auto code = ParseCommandLine(parser, args))
        return *code;
    const QString command = args.value(0);
    if (!parser.positionalArguments().isEmpty())
        return Fail(command + ": takes no arguments, only options");
    if (parser.isSet("list")) {
        if (parser.isSet("pty") || parser.isSet("vehicle") || parser.isSet("elm327"))
            return Fail(command + ": --list goes alone");
        return listGarage();
    }
    if (!parser.isSet("pty"))
        return Fail(command + ": give --pty (the vehicle is served on a pseudo-terminal) or --list");
    bool ok = false;
    const std::uint64_t seed = parser.value("seed").toULongLong(&ok);
    if (!ok)
        return Fail(command + ": --seed takes a whole number, not '" + parser.value("seed") + "'");
    const double rate = parser.value("faults").toDouble(&ok);
    if (!ok || rate < 0.0 || rate > 1.0)
        return Fail(command + ": --faults takes a share from 0 to 1, not '" + parser.value("faults") + "'");
    sim::VehicleConfig config;
    if (parser.isSet("vehicle")) {
        QString problem;
        const auto car = VehicleFromOption(parser.value("vehicle"), problem);
        if (!car)
            return Fail(command + ": " + problem);
        if (car->bus != sim::Bus::KLine && !parser.isSet("elm327"))
            return Fail(command + ": " + parser.value("vehicle") + " is a CAN car, which no K-line cable reaches; "
                        "serve it with --elm327");
        config = sim::configFor(*car, seed);
    }
    config.seed = seed;
    config.faults.seed = seed;
    config.faults.rate = rate;
    if (parser.isSet("elm327")) {
        if (rate > 0.0)
            return Fail(command + ": --faults reaches the K-line bus only; the emulated ELM327 answers without faults");
        return serve<sim::Elm327Adapter>(std::move(config));
    }
    return serve<sim::VirtualVehicle>(std::move(config));
}

} // namespace kvx::cli
