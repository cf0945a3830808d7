#include "sim/VirtualVehicle.h"

#include "link/KLineTiming.h"
#include "sim/KLineFrames.h"

#include <algorithm>

namespace kvx::sim {

using link::LineKind;
using link::TraceOrigin;
using namespace link::kline;

namespace {

constexpr link::Micros kInvKb2Wait = link::ms(1000);
// The key bytes of the "wrong key bytes" fault: neither ISO 9141-2 nor ISO 14230.
constexpr std::uint8_t kWrongKb1 = 0x12, kWrongKb2 = 0x34;

} // namespace

void VirtualVehicle::testerBreak(bool on)
{
    const link::Micros t = clock_.now();
    settle(t);
    if (on == lineLow_)
        return;
    lineLow_ = on;
    record_.events.push_back({t, on ? BusEvent::Kind::BreakOn : BusEvent::Kind::BreakOff, TraceOrigin::Tester, 0});
    const WakeUpDecoder::Edge edge = wakeUp_.edge(on, t, lastByte_ ? t - *lastByte_ : -1);
    if (edge.began)
        beginWakeUp();
    if (edge.fastInit)
        fastInitPulse(*edge.fastInit);
}

void VirtualVehicle::beginWakeUp()
{
    // Any wake-up pattern ends what went before: units listen for a new session.
    session_.reset();
    frame_.clear();
    handshake_ = Handshake::None;
    wakeFault_ = config_.faults.forWakeUp(wakeUps_++);
}

void VirtualVehicle::fastInitPulse(const InitObservation& obs)
{
    record_.inits.push_back(obs);
    if (!obs.note.empty())
        return;
    if (!config_.fastInit) {
        refuseWake("the car does not answer a fast init");
        return;
    }
    handshake_ = Handshake::AwaitStart;
    wakeDeadline_ = obs.lowEdge + kTWuP + kUnitEdgeTolerance;
}

void VirtualVehicle::refuseWake(const std::string& why)
{
    handshake_ = Handshake::None;
    if (!record_.inits.empty() && record_.inits.back().note.empty())
        record_.inits.back().note = why;
}

void VirtualVehicle::finishAddress()
{
    InitObservation obs = wakeUp_.finishAddress(lineLow_);
    if (obs.note.empty() && obs.address != kObdAddress)
        obs.note = "no unit answers that address";
    if (obs.note.empty() && !config_.slowInit)
        obs.note = "the car does not answer a 5-baud wake-up";
    obs.accepted = obs.note.empty();
    record_.inits.push_back(obs);
    const bool allSilent = std::all_of(units_.begin(), units_.end(), [this](const auto& u) { return silent(*u); });
    if (!obs.accepted || wakeFault_ == Fault::Silence || allSilent)
        return;

    // The first unit on the bus (the engine unit) holds the handshake.
    std::uint8_t kb1 = config_.isoKeyByte, kb2 = config_.isoKeyByte;
    if (config_.slowInit == LineKind::Kwp && !units_.empty()) {
        const EcuModel& lead = *units_.front();
        kb1 = kb1Of(lead, true);
        kb2 = lead.kwpKb2();
    }
    if (wakeFault_ == Fault::WrongKeyBytes)
        kb1 = kWrongKb1, kb2 = kWrongKb2;
    const link::Micros addressEnd = obs.lowEdge + kFiveBaudByte;
    link::Micros end = sendByte(kSync, addressEnd + config_.timing.w1);
    end = sendByte(kb1, end + config_.timing.w2);
    end = sendByte(kb2, end + config_.timing.w3);
    handshake_ = Handshake::AwaitInvKb2;
    wakeKb1_ = kb1;
    expectedInvKb2_ = static_cast<std::uint8_t>(~kb2);
    wakeDeadline_ = end + kInvKb2Wait;
}

void VirtualVehicle::invertedKb2(std::uint8_t byte, link::Micros end)
{
    if (byte != expectedInvKb2_) {
        refuseWake("the tester's inverted KB2 was wrong");
        return;
    }
    handshake_ = Handshake::None;
    const auto inverted =
        static_cast<std::uint8_t>(wakeFault_ == Fault::WrongInvertedAddress ? kObdAddress : ~kObdAddress);
    const link::Micros last = sendByte(inverted, end + config_.timing.w4);
    openSession(*config_.slowInit, last, wakeKb1_);
}

void VirtualVehicle::startCommunication(const Request& request, link::Micros end)
{
    handshake_ = Handshake::None;
    if (wakeFault_ == Fault::Silence)
        return;
    link::Micros at = end + config_.timing.p2;
    const bool wrong = wakeFault_ == Fault::WrongKeyBytes;
    std::optional<link::Micros> last;
    std::optional<std::uint8_t> shortHeaderUnit;
    std::uint8_t sessionKb1 = 0;
    for (EcuModel* unit : unitsByRank()) {
        if ((!request.functional && request.target != unit->address()) || silent(*unit))
            continue;
        const std::uint8_t kb1 = kb1Of(*unit, request.functional);
        const link::Bytes positive{positiveReply(kStartCommunication), wrong ? kWrongKb1 : kb1,
                                   wrong ? kWrongKb2 : unit->kwpKb2()};
        last = sendFrame(replyFrame(LineKind::Kwp, unit->address(), request.source, positive,
                                    KwpHeader{true, kb1WantsLengthByte(kb1)}),
                         at);
        at = *last + config_.timing.p2;
        sessionKb1 = kb1;
        if (!request.functional && !wrong && !kb1WantsAddresses(kb1))
            shortHeaderUnit = unit->address();
    }
    if (!last)
        return;
    openSession(LineKind::Kwp, *last, sessionKb1);
    session_->shortHeaderUnit = shortHeaderUnit;
    session_->shortHeaderTester = request.source;
}

} // namespace kvx::sim
