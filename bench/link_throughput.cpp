// Mode 01 requests per second against the virtual vehicle on the real clock, beside the limit the
// wire's own timing allows, and the process's CPU share while it polls: through the K-line cable,
// then through the emulated ELM327 on a K-line car and on CAN cars.
#include "link/LinkSession.h"
#include "sim/Elm327Adapter.h"
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

// The same request sent back to back for so many seconds of the clock.
struct Polling {
    int done = 0, empty = 0;
    Micros wall = 0, cpu = 0;

    double rate() const { return done / (static_cast<double>(wall) / 1e6); }
    double cpuPercent() const { return 100.0 * static_cast<double>(cpu) / static_cast<double>(wall); }
};

Polling poll(link::LinkSession& session, link::Clock& clock, const std::string& frame, double seconds)
{
    Polling p;
    const Micros wallStart = clock.now(), cpuStart = cpuTime();
    while (clock.now() - wallStart < static_cast<Micros>(seconds * 1e6)) {
        if (session.DecodeReply(session.Transact(frame)).empty())
            ++p.empty;
        ++p.done;
    }
    p.wall = clock.now() - wallStart;
    p.cpu = cpuTime() - cpuStart;
    return p;
}

// Through the emulated adapter, whose limit is its own: a tester that sends each command the moment
// the prompt arrives (the adapter counts the time it is engaged, serial bytes included).
int throughAdapter(double seconds)
{
    struct Row {
        const char* name;
        sim::Bus bus;
        int protocol;
        const char* request;
    };
    const Row rows[] = {
        {"K-line ISO 9141-2", sim::Bus::KLine, 1, "686AF1010C"},
        {"CAN 11-bit 500k", sim::Bus::Can11At500, 5, "686AF1010C"},
        {"CAN 29-bit 250k", sim::Bus::Can29At250, 8, "686AF1010C"},
    };
    std::printf("\n%-20s %10s %12s %8s %8s %s\n", "ELM327, car on", "req/s", "limit req/s", "ratio", "CPU %",
                "empty/requests");
    for (const Row& row : rows) {
        link::SteadyClock clock;
        sim::VehicleProfile car = sim::builtInVehicle();
        car.bus = row.bus;
        sim::Elm327Adapter adapter(clock, sim::configFor(car, 1));
        link::LinkSession session([&](int, link::InterfaceType) { return adapter.makeWire(); }, clock);
        session.SetInterface(link::InterfaceType::Elm327, sim::Elm327Adapter::kBaud);
        std::string keys;
        if (!session.InitializeEcu("33", 10400, 0, row.protocol, "", false, keys)) {
            std::printf("%s: the car did not answer through the adapter\n", row.name);
            return 1;
        }
        const std::string frame = session.EncodeRequest(row.request);
        session.Transact(frame);

        const sim::Elm327Adapter::Load before = adapter.load();
        const Polling p = poll(session, clock, frame, seconds);
        const sim::Elm327Adapter::Load after = adapter.load();
        const double limit = static_cast<double>(after.commands - before.commands) /
                             (static_cast<double>(after.busy - before.busy) / 1e6);
        std::printf("%-20s %10.2f %12.2f %8.3f %8.2f %4d/%d\n", row.name, p.rate(), limit, p.rate() / limit,
                    p.cpuPercent(), p.empty, p.done);
    }
    return 0;
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
            link::LinkSession session([&](int, link::InterfaceType) { return vehicle.makeWire(); }, clock);
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

            const Polling p = poll(session, clock, frame, seconds);

            // The wire's limit from the same timing: the tester's P4 is held to 20 ms by the link.
            const double byte = 10.0 / 10400 * 1e6;
            const double p4Used = std::min(p4, 20) * 1000.0;
            const double reqBytes = static_cast<double>(frame.size() / 2);
            const double body = reqBytes * (byte + p4Used) - p4Used + static_cast<double>(messages.size()) * unit.p2 +
                                static_cast<double>(replyBytes) * (byte + unit.p1);
            const double limit = p3 * 1000.0 + body + 50'000.0;
            // P3 counts from the last reply byte, so the 50 ms of silence that ends the replies is inside it.
            const double overlapped = std::max(p3 * 1000.0, 50'000.0) + body;
            std::printf("%-6d %-6d %10.2f %12.2f %12.2f %8.3f %8.3f %8.2f %4d/%d\n", p3, p4, p.rate(), 1e6 / limit,
                        1e6 / overlapped, p.rate() / (1e6 / limit), p.rate() / (1e6 / overlapped), p.cpuPercent(),
                        p.empty, p.done);
        }
    }
    return throughAdapter(seconds);
}
