#include "sim/DriveProfile.h"

#include "sim/Mix.h"

#include <algorithm>
#include <cmath>

namespace kvx::sim {

namespace {

constexpr double kCycle = 120.0;   // one pull-away, cruise, brake, stop

// Small repeatable jitter in [-1, 1] for a moment, so a value does not sit still.
double jitter(double seconds, unsigned long long seed, unsigned salt)
{
    const std::uint64_t tick = static_cast<std::uint64_t>(seconds * 10.0);
    return static_cast<double>(mix(mix(seed + salt) ^ tick) % 2001) / 1000.0 - 1.0;
}

double speedInCycle(double c)
{
    if (c < 20)
        return 70.0 * (1.0 - std::pow(1.0 - c / 20.0, 2));
    if (c < 70)
        return 70.0 + 4.0 * std::sin((c - 20) / 8.0);
    if (c < 90)
        return 70.0 * (90.0 - c) / 20.0;
    return 0.0;
}

} // namespace

EngineState engineStateAt(double seconds, unsigned long long seed)
{
    EngineState s;
    const double t = std::max(seconds, 0.0);
    s.runSeconds = t;
    s.ambientC = 18.0;
    s.coolantC = 18.0 + 72.0 * (1.0 - std::exp(-t / 200.0));
    s.catalystC = 18.0 + 560.0 * (1.0 - std::exp(-t / 120.0));
    s.closedLoop = s.coolantC > 40.0;

    const bool driving = t >= kWarmUpIdle;
    const double c = driving ? std::fmod(t - kWarmUpIdle, kCycle) : 0.0;
    const bool accelerating = driving && c < 20;
    const double cycleSpeed = driving ? speedInCycle(c) : 0.0;
    s.speedKmh = cycleSpeed > 1.0 ? cycleSpeed + 0.5 * jitter(t, seed, 1) : cycleSpeed;

    // Fast idle while cold, settling to 750 rpm; in gear the speed sets the engine speed.
    const double idle = 750.0 + 450.0 * std::exp(-t / 90.0);
    const double gearRatio = s.speedKmh < 20 ? 110.0 : s.speedKmh < 40 ? 65.0 : s.speedKmh < 60 ? 45.0 : 32.0;
    s.rpm = std::max(idle, s.speedKmh * gearRatio) + 15.0 * jitter(t, seed, 2);

    s.throttlePct = accelerating ? 35.0 + 10.0 * (1.0 - c / 20.0) : (driving && c < 70 ? 18.0 : 3.5);
    s.throttlePct += 0.4 * jitter(t, seed, 3);
    s.pedalPct = std::max(0.0, s.throttlePct * 1.1 - 2.0);
    s.loadPct = std::clamp(15.0 + s.throttlePct * 1.4 + (accelerating ? 15.0 : 0.0), 0.0, 100.0);
    s.mapKpa = std::clamp(28.0 + s.loadPct * 0.7, 20.0, s.baroKpa);
    s.mafGs = s.rpm * s.loadPct / 100.0 * 0.012 + 0.3 * jitter(t, seed, 4) + 1.8;
    s.timingDeg = accelerating ? 14.0 : (s.speedKmh > 1 ? 28.0 : 10.0);
    s.intakeC = s.ambientC + 12.0 * (1.0 - std::exp(-t / 400.0)) + (s.speedKmh > 1 ? -3.0 : 0.0);
    s.fuelPct = std::max(5.0, 62.0 - t / 300.0);
    s.batteryV = 14.1 + 0.1 * jitter(t, seed, 5);

    // Closed loop: the upstream sensor swings rich and lean about once a second.
    if (s.closedLoop) {
        s.o2UpstreamV = 0.45 + 0.38 * std::sin(t * 2.0 * 3.14159265 * 1.1);
        s.shortTrimPct = 3.0 * std::sin(t * 0.9) + jitter(t, seed, 6);
        s.lambda = 1.0 + 0.01 * std::sin(t * 2.0);
    } else {
        s.o2UpstreamV = 0.1;
        s.shortTrimPct = 0.0;
        s.lambda = 0.9;
    }
    s.longTrimPct = 4.7; // a lean engine leaning on its long-term trim
    s.o2DownstreamV = s.closedLoop ? 0.68 + 0.03 * jitter(t, seed, 7) : 0.05;
    return s;
}

} // namespace kvx::sim
