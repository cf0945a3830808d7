// Mode 01 requests per second against the virtual vehicle on the real clock, beside the limit the
// wire's own timing allows, and the process's CPU share while it polls.
#include "link/LinkSession.h"
#include "sim/VirtualVehicle.h"

#include <sys/resource.h>

#include <cstdio>
#include <string>
#include <vector>

using namespace kvx;
using link::Micros;
using link::ms;

namespace {

Micros cpuTime()
{
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return (u.ru_utime.tv_sec + u.ru_stime.tv_sec) * 1'000'000LL + u.ru_utime.tv_usec + u.ru_stime.tv_usec;
}

std::vector<std::string> split(const std::string& reply)
{
    std::vector<std::string> out;
    std::size_t from = 0;
    while (from < reply.size()) {
        auto to = reply.find(':', from);
        if (to == std::string::npos)
            to = reply.size();
        out.push_back(reply.substr(from, to - from));
        from = to + 1;
    }
    return out;
}

} // namespace

int main(int argc, char** argv)
{
    const double seconds = argc > 1 ? std::stod(argv[1]) : 5.0;
    const sim::EcuTiming unit; // the virtual units' own P1 and P2
    std::printf("%-6s %-6s %10s %12s %12s %8s %8s %8s %s\n", "P3 ms", "P4 ms", "req/s", "limit req/s", "overlap lim",
                "ratio", "ratio ov", "CPU %", "empty/requests");
    for (int p3 : {55, 300}) {
        for (int p4 : {5, 25}) {
            link::SteadyClock clock;
            sim::VirtualVehicle vehicle(clock);
            link::LinkSession session([&](int) { return vehicle.makeWire(); }, clock);
            session.SetP3Delay(p3);
            session.SetP4Delay(p4);
            std::string keys;
            if (!session.InitializeEcu("33", 10400, 0, 1, "", false, keys)) {
                std::printf("P3 %d P4 %d: the virtual vehicle did not wake up\n", p3, p4);
                return 1;
            }
            const std::string frame = session.EncodeRequest("686AF1010C");
            const std::string first = session.DecodeReply(session.Transact(frame));
            const auto messages = split(first);
            std::size_t replyBytes = 0;
            for (const auto& m : messages)
                replyBytes += m.size() / 2;

            const Micros wallStart = clock.now(), cpuStart = cpuTime();
            int done = 0, empty = 0;
            while (clock.now() - wallStart < static_cast<Micros>(seconds * 1e6)) {
                if (session.DecodeReply(session.Transact(frame)).empty())
                    ++empty;
                ++done;
            }
            const Micros wall = clock.now() - wallStart, cpu = cpuTime() - cpuStart;

            // The wire's limit from the same timing: the tester's P4 is held to 20 ms by the link.
            const double byte = 10.0 / 10400 * 1e6;
            const double p4Used = std::min(p4, 20) * 1000.0;
            const double reqBytes = static_cast<double>(frame.size() / 2);
            const double body = reqBytes * (byte + p4Used) - p4Used + static_cast<double>(messages.size()) * unit.p2 +
                                static_cast<double>(replyBytes) * (byte + unit.p1);
            const double limit = p3 * 1000.0 + body + 50'000.0;
            // P3 counts from the last reply byte, so the 50 ms of silence that ends the replies is inside it.
            const double overlapped = std::max(p3 * 1000.0, 50'000.0) + body;
            const double rate = done / (wall / 1e6);
            std::printf("%-6d %-6d %10.2f %12.2f %12.2f %8.3f %8.3f %8.2f %4d/%d\n", p3, p4, rate, 1e6 / limit,
                        1e6 / overlapped, rate / (1e6 / limit), rate / (1e6 / overlapped),
                        100.0 * static_cast<double>(cpu) / static_cast<double>(wall), empty, done);
        }
    }
    return 0;
}
