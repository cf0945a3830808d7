#pragma once

#include "link/Clock.h"

namespace kvx::link::kline {

// K-line timing windows of ISO 9141-2 and ISO 14230-2, in microseconds.
constexpr Micros kFiveBaudBit = ms(200);
constexpr Micros kFiveBaudByte = 10 * kFiveBaudBit; // start bit, eight data bits, stop bit
constexpr Micros kFiveBaudTolerance = ms(2);
constexpr Micros kW1Min = ms(60), kW1Max = ms(300);
constexpr Micros kW2Min = ms(5), kW2Max = ms(20);
constexpr Micros kW3Min = ms(0), kW3Max = ms(20);
constexpr Micros kW4Min = ms(25), kW4Max = ms(50);
constexpr Micros kW5Min = ms(300);
constexpr Micros kTiniL = ms(25);
constexpr Micros kTWuP = ms(50);
constexpr Micros kFastInitTolerance = ms(1);
constexpr Micros kP1Max = ms(20);
constexpr Micros kP2Min = ms(25), kP2Max = ms(50);
constexpr Micros kP2StarMax = ms(5000);
constexpr Micros kP3Min = ms(55);
constexpr Micros kP3Max = ms(5000);
constexpr Micros kP4Max = ms(20);

// Line rates a K-line interface can be asked for; the units themselves talk at 10400.
constexpr int kMinBaud = 1200;
constexpr int kMaxBaud = 115200;

// USB adapters hand bytes over in bursts up to a latency timer (16 ms by default on FTDI chips),
// so reads wait this much beyond a window's end before calling a byte missing.
constexpr Micros kUsbSlack = ms(20);

// More pending replies than this to one request means the unit is stuck, not busy.
constexpr int kMaxPendingReplies = 20;

} // namespace kvx::link::kline
