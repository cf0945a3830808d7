// A seeded fault soak on virtual time: many transactions through LinkSession against the virtual
// vehicle while its fault plan strikes requests and wake-ups, over ISO 9141-2, both KWP2000
// wake-ups and the Nissan start frame. For every fault kind it counts what the link made of it:
// crashes (an exception that is not a link error), hangs (an exchange longer than any window
// allows), phantom frames (a returned frame no unit sent), and how many transactions it took
// until a reply came back clean again (every frame the units meant, nothing else, no refusal).
//
//   bench_fault_soak [transactions per run]     (default 2000; 60 runs)
#include "link/Framing.h"
#include "link/LinkError.h"
#include "link/LinkSession.h"
#include "link/ReplyText.h"
#include "sim/VirtualVehicle.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

using namespace kvx;
using link::Bytes;
using link::Micros;
using link::ms;
using sim::Fault;

namespace {

// Longer than P3max, the request, P2*max after a pending reply and the collection that follows.
constexpr Micros kHang = ms(15000);
// As the keep-alive does: wake the unit again from the third silent exchange, give up at the 14th.
constexpr int kRewakeFrom = 3;
constexpr int kGiveUpAt = 14;
constexpr std::size_t kExamples = 10;

struct Line {
    const char* name;
    int protocol;
    link::LineKind slowInit;
    std::string startFrame; // Nissan: the bodies' start frame; empty for generic requests
    std::vector<std::string> requests;
};

std::vector<std::string> generic(const char* h1, const char* h2)
{
    return {link::genericRequest(h1, h2, "01", "00"), link::genericRequest(h1, h2, "01", "0C"),
            link::genericRequest(h1, h2, "01", "05"), link::genericRequest(h1, h2, "03"),
            link::genericRequest(h1, h2, "09", "02"), link::genericRequest(h1, h2, "01", "20")};
}

const std::vector<Line>& lines()
{
    static const std::vector<Line> all = {
        {"ISO 9141 slow", 1, link::LineKind::Iso9141, "", generic("68", "6A")},
        {"KWP slow", 2, link::LineKind::Kwp, "", generic("C0", "33")},
        {"KWP fast", 3, link::LineKind::Iso9141, "", generic("C0", "33")},
        {"Nissan start", 3, link::LineKind::Iso9141, "8110FC810E",
         {"052211000401", "052211010401", "052211020401", "052213010401"}},
    };
    return all;
}

const char* faultName(int kind)
{
    switch (kind) {
    case -1: return "(unit out of session)";
    case static_cast<int>(Fault::None): return "none";
    case static_cast<int>(Fault::Silence): return "silence";
    case static_cast<int>(Fault::DropSession): return "dropped session";
    case static_cast<int>(Fault::BadChecksum): return "bad checksum";
    case static_cast<int>(Fault::Noise): return "line noise";
    case static_cast<int>(Fault::NegativeReply): return "negative reply";
    case static_cast<int>(Fault::ResponsePending): return "response pending";
    case static_cast<int>(Fault::LateReply): return "late reply";
    case static_cast<int>(Fault::NoEcho): return "no echo";
    case static_cast<int>(Fault::Collision): return "collision";
    default: return "other";
    }
}

struct Tally {
    long transactions = 0;
    long linkErrors = 0;
    long crashes = 0;
    long hangs = 0;
    long phantoms = 0;
    long cleanAtOnce = 0;
    long recoveries = 0;     // faults followed by a clean reply
    long recoverySum = 0;    // transactions it took, summed
    long recoveryMax = 0;
    long neverRecovered = 0; // still waiting when the run ended
};

struct Soak {
    std::map<int, Tally> byKind;
    long wakeUps = 0;
    long wakeFailures = 0;
    long wakeErrors = 0;
    long transactions = 0;
    std::vector<std::string> phantomExamples;
};

bool isPending(const Bytes& payload) { return payload.size() >= 3 && payload[0] == 0x7F && payload[2] == 0x78; }

// One run: a vehicle with this seed and fault rate, `count` transactions on one line.
void run(const Line& line, std::uint64_t seed, double rate, int count, Soak& soak)
{
    sim::VehicleConfig config;
    config.seed = seed;
    config.slowInit = line.slowInit;
    config.faults.seed = seed;
    config.faults.rate = rate;
    link::VirtualClock clock(ms(1000));
    sim::VirtualVehicle vehicle(clock, config);
    link::LinkSession link([&](int, link::InterfaceType) { return vehicle.makeWire(); }, clock);
    link.SetP3Delay(60);
    link.SetP4Delay(5);
    const sim::BusRecord& record = vehicle.record();
    const bool bodies = !line.startFrame.empty();

    const auto wake = [&](bool reconnect) {
        ++soak.wakeUps;
        std::string result;
        try {
            const bool ok = link.InitializeEcu(bodies ? "" : "33", 10400, 0, line.protocol, line.startFrame, reconnect, result);
            soak.wakeFailures += ok ? 0 : 1;
            return ok;
        } catch (const link::LinkError&) {
            ++soak.wakeErrors;
            return false;
        }
    };

    struct Waiting {
        int kind;
        long since;
    };
    std::vector<Waiting> waiting;
    bool up = false;
    int silence = 0;
    for (int n = 0; n < count;) {
        if (!up) {
            up = wake(false);
            continue;
        }
        const std::string& request = line.requests[static_cast<std::size_t>(n) % line.requests.size()];
        ++n;
        const std::size_t heardBefore = record.requests.total();
        const std::size_t sentBefore = record.framesSent.total();
        const Micros start = clock.now();
        std::string raw;
        bool failed = false, crashed = false;
        try {
            raw = link.Transact(link.EncodeRequest(request));
        } catch (const link::LinkError&) {
            failed = true;
        } catch (const std::exception&) {
            crashed = true;
        }
        const int kind = record.requests.total() > heardBefore ? static_cast<int>(record.requests.number(heardBefore).fault) : -1;
        Tally& t = soak.byKind[kind];
        ++t.transactions;
        ++soak.transactions;
        t.linkErrors += failed;
        t.crashes += crashed;
        t.hangs += clock.now() - start > kHang;

        // What the units put on the line for this request, in the form the link hands replies on.
        std::vector<std::string> sent, meant;
        bool damaged = false;
        for (std::size_t i = sentBefore; i < record.framesSent.total(); ++i) {
            const Bytes& f = record.framesSent.number(i);
            const std::string form = link::toHex(bodies ? link::bodyOf(link::LineKind::Kwp, f) : f);
            sent.push_back(form);
            const Bytes payload = link::payloadOf(line.protocol == 1 ? link::LineKind::Iso9141 : link::LineKind::Kwp, f);
            if (isPending(payload))
                continue;
            damaged = damaged || !link::checksumHolds(link::toHex(f));
            meant.push_back(form);
        }
        const std::vector<std::string> got = link::splitReply(raw);
        bool refused = false;
        for (const std::string& m : got) {
            if (std::find(sent.begin(), sent.end(), m) != sent.end())
                continue;
            ++t.phantoms;
            if (soak.phantomExamples.size() < kExamples) {
                std::string example = std::string(line.name) + ": " + m + " returned; sent";
                for (const std::string& f : sent)
                    example += " " + f;
                soak.phantomExamples.push_back(example);
            }
            refused = refused || (bodies ? m.substr(2, 2) : link::serviceText(m)) == "7F";
        }
        const bool clean = !failed && !crashed && !got.empty() && !damaged && !refused && got == meant;

        for (Waiting& w : waiting)
            ++w.since;
        if (clean) {
            for (const Waiting& w : waiting) {
                Tally& wt = soak.byKind[w.kind];
                ++wt.recoveries;
                wt.recoverySum += w.since;
                wt.recoveryMax = std::max(wt.recoveryMax, w.since);
            }
            waiting.clear();
            if (kind > 0) {
                ++t.cleanAtOnce;
                ++t.recoveries;
            }
        } else if (kind != static_cast<int>(Fault::None)) {
            waiting.push_back({kind, 0});
        }

        // The session as the services keep it: a link error ends it, silence wakes the unit again.
        if (failed || crashed) {
            link.ClosePort(0);
            up = false;
            silence = 0;
            continue;
        }
        silence = raw.empty() ? silence + 1 : 0;
        if (silence >= kGiveUpAt) {
            link.ClosePort(0);
            up = false;
            silence = 0;
        } else if (silence >= kRewakeFrom && wake(true)) {
            silence = 0;
        }
    }
    for (const Waiting& w : waiting)
        ++soak.byKind[w.kind].neverRecovered;
}

} // namespace

int main(int argc, char** argv)
{
    const int perRun = argc > 1 ? std::max(1, std::stoi(argv[1])) : 2000;
    const std::uint64_t seeds[] = {1, 2, 3, 4, 5};
    const double rates[] = {0.1, 0.3, 0.5};
    Soak soak;
    const auto wallStart = std::chrono::steady_clock::now();
    for (const Line& line : lines())
        for (std::uint64_t seed : seeds)
            for (double rate : rates)
                run(line, seed, rate, perRun, soak);
    const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - wallStart).count();

    std::printf("%ld transactions (%zu lines x %zu seeds x %zu fault rates x %d), %.1f s of wall time\n",
                soak.transactions, lines().size(), std::size(seeds), std::size(rates), perRun, wall);
    std::printf("wake-ups %ld: unanswered %ld, link errors %ld\n\n", soak.wakeUps, soak.wakeFailures, soak.wakeErrors);
    std::printf("%-22s %9s %7s %7s %6s %8s %10s %12s %10s %9s\n", "fault", "trans.", "errors", "crashes", "hangs",
                "phantoms", "clean now", "mean to clean", "max", "unended");
    Tally total;
    for (const auto& [kind, t] : soak.byKind) {
        const double mean = t.recoveries ? static_cast<double>(t.recoverySum) / static_cast<double>(t.recoveries) : 0.0;
        std::printf("%-22s %9ld %7ld %7ld %6ld %8ld %10ld %12.2f %10ld %9ld\n", faultName(kind), t.transactions,
                    t.linkErrors, t.crashes, t.hangs, t.phantoms, t.cleanAtOnce, mean, t.recoveryMax, t.neverRecovered);
        total.transactions += t.transactions;
        total.crashes += t.crashes;
        total.hangs += t.hangs;
        total.phantoms += t.phantoms;
    }
    std::printf("%-22s %9ld %7s %7ld %6ld %8ld\n", "all", total.transactions, "", total.crashes, total.hangs, total.phantoms);
    for (const std::string& example : soak.phantomExamples)
        std::printf("phantom: %s\n", example.c_str());
    return total.crashes + total.hangs + total.phantoms == 0 ? 0 : 1;
}
