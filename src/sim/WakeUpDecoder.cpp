#include "sim/WakeUpDecoder.h"

#include "link/KLineTiming.h"
#include "sim/FiveBaudDecoder.h"

#include <cstdlib>

namespace kvx::sim {

using namespace link::kline;

namespace {

// Shorter lows than this are fast-init pulses; a 5-baud start bit lasts 200 ms.
constexpr link::Micros kLongestPulse = link::ms(100);

} // namespace

InitObservation WakeUpDecoder::observe(InitObservation::Kind kind) const
{
    InitObservation obs;
    obs.kind = kind;
    obs.lowEdge = lowEdge_;
    obs.idleBefore = idleBefore_;
    return obs;
}

WakeUpDecoder::Edge WakeUpDecoder::edge(bool low, link::Micros t, link::Micros idleBefore)
{
    Edge out;
    if (low && state_ != State::FiveBaud) {
        state_ = State::LowPulse;
        lowEdge_ = t;
        idleBefore_ = idleBefore;
        edges_.clear();
        out.began = true;
        return out;
    }
    if (low || state_ == State::FiveBaud) {
        edges_.push_back(t);
        return out;
    }
    if (state_ != State::LowPulse)
        return out;
    const link::Micros width = t - lowEdge_;
    if (width >= kLongestPulse) {
        state_ = State::FiveBaud;
        edges_.push_back(t);
        return out;
    }
    state_ = State::Idle;
    InitObservation obs = observe(InitObservation::Kind::FastInit);
    obs.lowWidth = width;
    if (std::llabs(width - kTiniL) > kUnitEdgeTolerance)
        obs.note = "the fast-init low pulse was not 25 ms";
    out.fastInit = obs;
    return out;
}

std::optional<link::Micros> WakeUpDecoder::addressEnd() const
{
    if (state_ == State::Idle)
        return std::nullopt;
    return lowEdge_ + kFiveBaudByte;
}

InitObservation WakeUpDecoder::finishAddress(bool lineLow)
{
    state_ = State::Idle;
    InitObservation obs = observe(InitObservation::Kind::FiveBaud);
    obs.bitEdges = edges_;
    const FiveBaudResult r = decodeFiveBaud(lowEdge_, edges_, kUnitEdgeTolerance);
    obs.worstBitError = r.worstError;
    obs.address = r.address.value_or(-1);
    if (lineLow)
        obs.note = "the line was still low at the stop bit";
    else if (!r.address)
        obs.note = "the edges do not fall on the 200 ms bit grid";
    return obs;
}

} // namespace kvx::sim
