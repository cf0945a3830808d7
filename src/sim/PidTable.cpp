#include "sim/PidTable.h"

#include "sim/ValueBytes.h"

#include <algorithm>
#include <cmath>

namespace kvx::sim {

namespace {

double temp(double c) { return c + 40.0; }

link::Bytes monitorStatus(const PidContext& c)
{
    // Misfire, fuel system and components monitored; catalyst, evap, O2 and heater supported,
    // the evaporative test not yet complete since the codes were cleared.
    const std::uint8_t a = static_cast<std::uint8_t>((c.mil ? 0x80 : 0) | std::min(c.storedCodes, 0x7F));
    const std::uint8_t d = c.secondsSinceClear > 600 ? 0x04 : 0x65;
    return {a, 0x07, 0x65, d};
}

link::Bytes o2Sensor(double volts, double trimPct) { return {u8(volts / 0.005), u8(trim(trimPct))}; }

const std::vector<PidEntry> kEngine = {
    {0x01, monitorStatus},
    {0x03, [](const PidContext& c) { return link::Bytes{c.state.closedLoop ? std::uint8_t{0x02} : std::uint8_t{0x01}, 0}; }},
    {0x04, [](const PidContext& c) { return one(pct(c.state.loadPct)); }},
    {0x05, [](const PidContext& c) { return one(temp(c.state.coolantC)); }},
    {0x06, [](const PidContext& c) { return one(trim(c.state.shortTrimPct)); }},
    {0x07, [](const PidContext& c) { return one(trim(c.state.longTrimPct)); }},
    {0x0B, [](const PidContext& c) { return one(c.state.mapKpa); }},
    {0x0C, [](const PidContext& c) { return two(c.state.rpm * 4.0); }},
    {0x0D, [](const PidContext& c) { return one(c.state.speedKmh); }},
    {0x0E, [](const PidContext& c) { return one(c.state.timingDeg * 2.0 + 128.0); }},
    {0x0F, [](const PidContext& c) { return one(temp(c.state.intakeC)); }},
    {0x10, [](const PidContext& c) { return two(c.state.mafGs * 100.0); }},
    {0x11, [](const PidContext& c) { return one(pct(c.state.throttlePct)); }},
    {0x13, [](const PidContext&) { return link::Bytes{0x03}; }}, // bank 1 sensors 1 and 2
    {0x14, [](const PidContext& c) { return o2Sensor(c.state.o2UpstreamV, c.state.shortTrimPct); }},
    {0x15, [](const PidContext& c) { return o2Sensor(c.state.o2DownstreamV, 0.0); }},
    {0x1C, [](const PidContext&) { return link::Bytes{0x06}; }}, // EOBD and OBD-II
    {0x1F, [](const PidContext& c) { return two(c.state.runSeconds); }},
    {0x21, [](const PidContext& c) { return two(c.kmWithMil); }},
    {0x2E, [](const PidContext& c) { return one(pct(c.state.closedLoop ? 22.0 : 0.0)); }},
    {0x2F, [](const PidContext& c) { return one(pct(c.state.fuelPct)); }},
    {0x30, [](const PidContext& c) { return one(c.warmUpsSinceClear); }},
    {0x31, [](const PidContext& c) { return two(c.kmSinceClear); }},
    {0x33, [](const PidContext& c) { return one(c.state.baroKpa); }},
    {0x3C, [](const PidContext& c) { return two((c.state.catalystC + 40.0) * 10.0); }},
    {0x42, [](const PidContext& c) { return two(c.state.batteryV * 1000.0); }},
    {0x43, [](const PidContext& c) { return two(pct(c.state.loadPct * 0.9)); }},
    {0x44, [](const PidContext& c) { return two(c.state.lambda * 32768.0); }},
    {0x45, [](const PidContext& c) { return one(pct(std::max(0.0, c.state.throttlePct - 3.0))); }},
    {0x46, [](const PidContext& c) { return one(temp(c.state.ambientC)); }},
    {0x47, [](const PidContext& c) { return one(pct(c.state.throttlePct + 4.0)); }},
    {0x49, [](const PidContext& c) { return one(pct(c.state.pedalPct + 14.0)); }},
    {0x4A, [](const PidContext& c) { return one(pct(c.state.pedalPct / 2.0 + 7.0)); }},
    {0x4C, [](const PidContext& c) { return one(pct(c.state.throttlePct)); }},
    {0x4D, [](const PidContext& c) { return two(c.secondsWithMil / 60.0); }},
    {0x4E, [](const PidContext& c) { return two(c.secondsSinceClear / 60.0); }},
};

} // namespace

const std::vector<PidEntry>& enginePids() { return kEngine; }

link::Bytes supportBitmap(const std::vector<std::uint8_t>& pids, std::uint8_t base)
{
    std::uint32_t bits = 0;
    for (std::uint8_t pid : pids) {
        if (pid > base && pid <= base + 32)
            bits |= 1u << (32 - (pid - base));
        else if (pid > base + 32)
            bits |= 1u; // the next bitmap is worth asking for
    }
    return {static_cast<std::uint8_t>(bits >> 24), static_cast<std::uint8_t>(bits >> 16),
            static_cast<std::uint8_t>(bits >> 8), static_cast<std::uint8_t>(bits)};
}

std::optional<link::Bytes> rangeBitmap(const std::vector<std::uint8_t>& pids, std::uint8_t base)
{
    const bool reached = base == 0 || std::any_of(pids.begin(), pids.end(), [base](auto p) { return p > base; });
    if (!reached)
        return std::nullopt;
    return supportBitmap(pids, base);
}

std::optional<link::Bytes> encodePid(const std::vector<PidEntry>& table, std::uint8_t pid, const PidContext& ctx)
{
    if (pid % 0x20 == 0) {
        std::vector<std::uint8_t> pids;
        for (const auto& e : table)
            pids.push_back(e.pid);
        return rangeBitmap(pids, pid);
    }
    for (const auto& e : table)
        if (e.pid == pid)
            return e.encode(ctx);
    return std::nullopt;
}

} // namespace kvx::sim
