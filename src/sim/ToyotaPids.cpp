#include "sim/ToyotaPids.h"

#include "sim/EngineSignals.h"
#include "sim/ValueBytes.h"

namespace kvx::sim {

namespace {

link::Bytes join(const link::Bytes& a, const link::Bytes& b)
{
    link::Bytes out = a;
    out.insert(out.end(), b.begin(), b.end());
    return out;
}

// The Toyota engine unit's own service 01 parameters above B0, following the drive.
// ISO 9141 leaves five data bytes after 41 and the parameter, so no parameter carries more.
const std::vector<PidEntry> kToyota = {
    {0xB1, [](const PidContext& c) { return join(two(c.state.rpm * 4.0), one(c.state.speedKmh)); }},
    {0xB2,
     [](const PidContext& c) { return join(two(injectionMs(c.state) * 100.0), one(c.state.timingDeg * 2.0 + 128.0)); }},
    {0xB3, [](const PidContext& c) { return join(one(pct(idleValvePct(c.state))), one(pct(c.state.loadPct))); }},
    {0xC1,
     [](const PidContext& c) {
         return link::Bytes{u8(c.state.coolantC + 40.0), u8(c.state.intakeC + 40.0), u8(c.state.batteryV * 10.0)};
     }},
    {0xC2,
     [](const PidContext& c) {
         const EngineState& s = c.state;
         return link::Bytes{bits({s.throttlePct < 5.0, s.runSeconds < 2.0, airConditioning(s), inPark(s),
                                  waitingAtLight(s), true, false, s.speedKmh < 1.0})};
     }},
    {0xE1, [](const PidContext& c) { return join(one(pct(c.state.throttlePct)), one(throttleSensorVolts(c.state) / 0.02)); }},
    {0xE2, [](const PidContext& c) { return join(one(trim(c.state.shortTrimPct)), one(trim(c.state.longTrimPct))); }},
};

} // namespace

std::optional<link::Bytes> encodeToyotaPid(std::uint8_t pid, const PidContext& ctx, const std::set<std::uint8_t>& ranges)
{
    const auto rangeOf = [](std::uint8_t p) -> std::uint8_t { return p >= 0xE0 ? 0xE0 : p >= 0xC0 ? 0xC0 : 0xB0; };
    if (!ranges.count(rangeOf(pid)))
        return std::nullopt;
    std::vector<PidEntry> offered;
    for (const auto& e : kToyota)
        if (ranges.count(rangeOf(e.pid)))
            offered.push_back(e);
    // B0 sits off the 20-step grid that the generic bitmaps (and so C0 and E0) keep to.
    if (pid == 0xB0) {
        std::vector<std::uint8_t> pids;
        for (const auto& e : offered)
            pids.push_back(e.pid);
        return supportBitmap(pids, pid);
    }
    return encodePid(offered, pid, ctx);
}

} // namespace kvx::sim
