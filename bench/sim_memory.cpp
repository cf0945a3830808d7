// The memory of a long `kvx sim --pty` run: a tester polls the virtual vehicle five times a second
// for hours of virtual time, as a pty delivers it (no breaks, ISO 9141 requests), and the process's
// peak resident size is printed after every hour beside what the bus record holds.
//
//   bench_sim_memory [hours]     (default 8)
#include "link/Clock.h"
#include "link/Hex.h"
#include "sim/VirtualVehicle.h"

#include <sys/resource.h>

#include <cstdio>
#include <string>

using namespace kvx;
using link::ms;

namespace {

double peakRssMb()
{
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return static_cast<double>(u.ru_maxrss) / 1024.0;
}

} // namespace

int main(int argc, char** argv)
{
    const int hours = argc > 1 ? std::max(1, std::stoi(argv[1])) : 8;
    link::VirtualClock clock(ms(1000));
    sim::VehicleConfig config;
    config.noBreaks = true;
    sim::VirtualVehicle vehicle(clock, config);
    const std::uint8_t pids[] = {0x0C, 0x0D, 0x05, 0x04};
    const link::Micros hour = ms(3'600'000);
    const link::Micros poll = ms(200);
    long requests = 0;
    std::size_t received = 0;
    std::printf("%6s %10s %14s %14s %12s\n", "hours", "requests", "events held", "events gone", "peak RSS MB");
    std::printf("%6d %10ld %14zu %14zu %12.1f\n", 0, requests, vehicle.record().events.size(),
                vehicle.record().events.dropped(), peakRssMb());
    for (int h = 1; h <= hours; ++h) {
        const link::Micros end = clock.now() + hour;
        while (clock.now() < end) {
            link::Bytes frame{0x68, 0x6A, 0xF1, 0x01, pids[requests % 4]};
            frame.push_back(link::checksum(frame));
            vehicle.testerWrite(frame);
            ++requests;
            clock.sleepFor(poll);
            vehicle.settle(clock.now());
            received += vehicle.takeReceived().size();
        }
        std::printf("%6d %10ld %14zu %14zu %12.1f\n", h, requests, vehicle.record().events.size(),
                    vehicle.record().events.dropped(), peakRssMb());
    }
    std::printf("%zu bytes reached the tester\n", received);
    return received > 0 ? 0 : 1;
}
