#pragma once

#include "link/Clock.h"
#include "link/LinkSession.h"

namespace kvx::log {

// The timing the player paces frames with: the link's stopwatch, and a sleep in the operating
// system so that waiting between frames costs no processor time.
class ReplayStopwatch {
public:
    virtual ~ReplayStopwatch() = default;
    virtual void StartStopwatch() = 0;
    virtual void LapStopwatch() = 0;
    // Seconds from the start to the last lap, in ten-thousandths.
    virtual link::FixedSeconds ReadStopwatch() const = 0;
    virtual void sleepFor(link::Micros duration) = 0;
};

} // namespace kvx::log
