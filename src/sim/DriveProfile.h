#pragma once

namespace kvx::sim {

// The engine's running state at one moment.
struct EngineState {
    double rpm = 0;
    double speedKmh = 0;
    double coolantC = 0;
    double intakeC = 0;
    double ambientC = 0;
    double loadPct = 0;
    double throttlePct = 0;
    double pedalPct = 0;
    double mafGs = 0;
    double mapKpa = 0;
    double baroKpa = 101;
    double timingDeg = 0;
    double shortTrimPct = 0;
    double longTrimPct = 0;
    double o2UpstreamV = 0;
    double o2DownstreamV = 0;
    double lambda = 1;
    double fuelPct = 0;
    double catalystC = 0;
    double batteryV = 0;
    double runSeconds = 0;
    bool closedLoop = false;
};

// Seconds of idle (in park) after the engine start before the first drive.
inline constexpr double kWarmUpIdle = 180.0;

// A cold start, a few minutes of idle while the engine warms, then town driving in a repeating
// cycle (pull away, cruise, brake, wait at a light). seconds counts from the engine start.
EngineState engineStateAt(double seconds, unsigned long long seed);

} // namespace kvx::sim
