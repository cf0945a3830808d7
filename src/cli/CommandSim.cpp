#include "cli/Command.h"
#include "link/Clock.h"
#include "sim/VirtualVehicle.h"

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

int usage()
{
    std::fprintf(stderr,
                 "usage: kvx sim --pty [--seed N] [--faults RATE]\n"
                 "Serves the virtual vehicle on a pseudo-terminal and prints its path; K-line software\n"
                 "opened on that path talks to an engine unit (10) and a gearbox unit (18).\n"
                 "  --seed N       seed of the vehicle and its fault plan (default 1)\n"
                 "  --faults RATE  share of requests that meet a fault, 0 to 1 (default 0)\n");
    return 2;
}

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

int serve(std::uint64_t seed, double rate)
{
    Pty pty;
    if (!openPty(pty)) {
        std::fprintf(stderr, "kvx sim: could not open a pseudo-terminal: %s\n", std::strerror(errno));
        return 1;
    }
    link::SteadyClock clock;
    sim::VehicleConfig config;
    config.seed = seed;
    config.noBreaks = true;
    config.faults.seed = seed;
    config.faults.rate = rate;
    sim::VirtualVehicle vehicle(clock, config);
    std::printf("%s\n", pty.path.c_str());
    std::fflush(stdout);

    std::uint8_t buf[256];
    for (;;) {
        // Sleep in poll until the tester writes or the vehicle has something to send.
        int timeoutMs = -1;
        if (const auto next = vehicle.nextEvent())
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
                vehicle.testerWrite(link::Bytes(buf, buf + n));
        }
        vehicle.settle(clock.now());
        if (!writeAll(pty.master, vehicle.takeReceived())) {
            std::fprintf(stderr, "kvx sim: writing to the pseudo-terminal failed: %s\n", std::strerror(errno));
            return 1;
        }
    }
}

int run(const QStringList& args)
{
    bool pty = false;
    std::uint64_t seed = 1;
    double rate = 0.0;
    for (int i = 1; i < args.size(); ++i) {
        const QString& a = args.at(i);
        bool ok = true;
        if (a == "--pty") {
            pty = true;
        } else if (a == "--seed" && i + 1 < args.size()) {
            seed = args.at(++i).toULongLong(&ok);
        } else if (a == "--faults" && i + 1 < args.size()) {
            rate = args.at(++i).toDouble(&ok);
            ok = ok && rate >= 0.0 && rate <= 1.0;
        } else {
            return usage();
        }
        if (!ok) {
            std::fprintf(stderr, "kvx sim: %s is not a valid value for %s\n", args.at(i).toLocal8Bit().constData(),
                         args.at(i - 1).toLocal8Bit().constData());
            return 2;
        }
    }
    if (!pty)
        return usage();
    return serve(seed, rate);
}

const RegisterCommand registered{{"sim", "serve the virtual vehicle on a pseudo-terminal (--pty)", run}};

} // namespace

} // namespace kvx::cli
