#include "sim/EngineSignals.h"

#include <algorithm>

namespace kvx::sim {

double injectionMs(const EngineState& s) { return 1.9 + s.loadPct * 0.055; }

double idleValvePct(const EngineState& s)
{
    // The valve holds the fast idle while the engine is cold and is nearly shut on the road.
    if (s.speedKmh > 1.0)
        return 12.0;
    return 30.0 + std::max(0.0, 60.0 - s.coolantC) * 0.3;
}

double targetIdleRpm(const EngineState& s) { return s.coolantC < 70.0 ? 900.0 : 750.0; }

double throttleSensorVolts(const EngineState& s) { return 0.45 + s.throttlePct * 0.04; }

double airFlowMeterVolts(const EngineState& s) { return std::min(5.0, 0.9 + s.mafGs * 0.09); }

int gearAt(const EngineState& s)
{
    if (s.speedKmh < 20)
        return 1;
    if (s.speedKmh < 40)
        return 2;
    return s.speedKmh < 60 ? 3 : 4;
}

bool inPark(const EngineState& s) { return s.runSeconds < kWarmUpIdle; }

bool waitingAtLight(const EngineState& s) { return !inPark(s) && s.speedKmh < 1.0; }

bool airConditioning(const EngineState& s) { return s.runSeconds > 60.0; }

} // namespace kvx::sim
