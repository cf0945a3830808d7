#pragma once

#include "sim/DriveProfile.h"

namespace kvx::sim {

// Signals the makers' own services report beside the J1979 ones, worked out from the engine's
// running state so that they move with the drive.
double injectionMs(const EngineState& s);
double idleValvePct(const EngineState& s);
double targetIdleRpm(const EngineState& s);
double throttleSensorVolts(const EngineState& s);
double airFlowMeterVolts(const EngineState& s);
int gearAt(const EngineState& s);      // 1-4, chosen by road speed
bool inPark(const EngineState& s);     // the warm-up idle before the first drive
bool waitingAtLight(const EngineState& s);
bool airConditioning(const EngineState& s);

} // namespace kvx::sim
