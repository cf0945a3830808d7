#pragma once

#include "log/ReplayFrames.h"
#include "log/ReplayStopwatch.h"

namespace kvx {
struct Session;
}

namespace kvx::log {

// The player's pacing through the link's stopwatch and clock.
class LinkStopwatch final : public ReplayStopwatch {
public:
    explicit LinkStopwatch(link::LinkSession& link) : link_(link) {}
    void StartStopwatch() override;
    void LapStopwatch() override;
    link::FixedSeconds ReadStopwatch() const override;
    void sleepFor(link::Micros duration) override;

private:
    link::LinkSession& link_;
};

// The live-data screens' decoding of generic replies, from the link.
LiveDecoding LinkLiveDecoding(const link::LinkSession& link);

// Every kind of log the player can show, decoded by the session's link into its screen.
FrameHandlers SessionFrameHandlers(Session& session);

} // namespace kvx::log
