#include "sim/VirtualVehicle.h"

#include "sim/FiveBaudDecoder.h"
#include "sim/KLineFrames.h"

#include <algorithm>
#include <cstdlib>

namespace kvx::sim {

using link::LineKind;
using link::TraceOrigin;
using namespace link::kline;

namespace {

constexpr int kBusBaud = 10400;
// The units read the tester's edges with more slack than the tester keeps to.
constexpr link::Micros kEdgeTolerance = link::ms(10);
// Shorter lows than this are fast-init pulses; a 5-baud start bit lasts 200 ms.
constexpr link::Micros kLongestPulse = link::ms(100);
// A tester frame ends when no byte follows for this long (P4 allows at most 20 ms between bytes).
constexpr link::Micros kFrameGap = link::ms(25);
constexpr link::Micros kInvKb2Wait = link::ms(1000);
// A byte sent at another rate than the receiver's arrives as garbage; a collision flips a bit.
constexpr std::uint8_t kGarbled = 0xA5;
constexpr std::uint8_t kCollidedBit = 0x10;
// The key bytes of the "wrong key bytes" fault: neither ISO 9141-2 nor ISO 14230.
constexpr std::uint8_t kWrongKb1 = 0x12, kWrongKb2 = 0x34;

// Within 2 %; worked in 64 bits so no rate a tester may ask for overflows the test.
bool baudHolds(int baud) { return std::llabs(static_cast<long long>(baud) - kBusBaud) * 50 <= kBusBaud; }

} // namespace

VirtualVehicle::VirtualVehicle(link::Clock& clock, VehicleConfig config)
    : clock_(clock), config_(std::move(config)), noise_(config_.seed * 0x9E3779B97F4A7C15ull + 1)
{
    if (config_.units.empty())
        config_.units = configFor(builtInVehicle(), config_.seed).units;
    for (auto& make : config_.units)
        units_.push_back(make(clock_, config_.seed));
}

VirtualVehicle::~VirtualVehicle() = default;

link::Micros VirtualVehicle::byteTime() const
{
    // Ten bits: start, eight data, stop.
    return (10'000'000 + baud_ / 2) / std::max(baud_, 1);
}

void VirtualVehicle::setBaud(int baud)
{
    settle(clock_.now());
    baud_ = baud;
}

// ---- the tester's side --------------------------------------------------------------------

void VirtualVehicle::testerBreak(bool on)
{
    const link::Micros t = clock_.now();
    settle(t);
    if (on == lineLow_)
        return;
    lineLow_ = on;
    record_.events.push_back({t, on ? BusEvent::Kind::BreakOn : BusEvent::Kind::BreakOff, TraceOrigin::Tester, 0});
    if (on && wake_ != Wake::FiveBaud) {
        beginWakeUp(t);
        return;
    }
    if (on) {
        wakeEdges_.push_back(t);
        return;
    }
    if (wake_ == Wake::FiveBaud) {
        wakeEdges_.push_back(t);
        return;
    }
    if (wake_ != Wake::LowPulse)
        return;
    const link::Micros width = t - lowEdge_;
    if (width >= kLongestPulse) {
        wake_ = Wake::FiveBaud;
        wakeEdges_.push_back(t);
        return;
    }
    InitObservation obs = observe(InitObservation::Kind::FastInit);
    obs.lowWidth = width;
    record_.inits.push_back(obs);
    if (std::llabs(width - kTiniL) > kEdgeTolerance) {
        refuseWake("the fast-init low pulse was not 25 ms");
        return;
    }
    if (!config_.fastInit) {
        refuseWake("the car does not answer a fast init");
        return;
    }
    wake_ = Wake::AwaitStart;
    wakeDeadline_ = lowEdge_ + kTWuP + kEdgeTolerance;
}

void VirtualVehicle::beginWakeUp(link::Micros t)
{
    // Any wake-up pattern ends what went before: units listen for a new session.
    session_.reset();
    frame_.clear();
    wake_ = Wake::LowPulse;
    lowEdge_ = t;
    idleBefore_ = -1;
    for (auto e = record_.events.rbegin(); e != record_.events.rend(); ++e)
        if (e->kind == BusEvent::Kind::Byte) {
            idleBefore_ = t - e->time;
            break;
        }
    wakeEdges_.clear();
    wakeFault_ = config_.faults.forWakeUp(wakeUps_++);
}

void VirtualVehicle::testerWrite(const link::Bytes& bytes)
{
    const link::Micros t = clock_.now();
    settle(t);
    link::Micros start = std::max(t, testerLineFree_);
    for (std::uint8_t b : bytes) {
        const link::Micros end = start + byteTime();
        auto at = std::upper_bound(outgoing_.begin(), outgoing_.end(), end,
                                   [](link::Micros v, const Pending& p) { return v < p.time; });
        outgoing_.insert(at, {end, TraceOrigin::Tester, b});
        start = end;
    }
    testerLineFree_ = start;
}

link::Bytes VirtualVehicle::takeReceived()
{
    link::Bytes out;
    out.swap(received_);
    return out;
}

std::optional<link::Micros> VirtualVehicle::nextInternal() const
{
    std::optional<link::Micros> next;
    auto consider = [&next](link::Micros t) {
        if (!next || t < *next)
            next = t;
    };
    if (!outgoing_.empty())
        consider(outgoing_.front().time);
    if (wake_ == Wake::LowPulse || wake_ == Wake::FiveBaud)
        consider(lowEdge_ + kFiveBaudByte);
    if ((wake_ == Wake::AwaitInvKb2 || wake_ == Wake::AwaitStart) && frame_.empty())
        consider(wakeDeadline_);
    if (!frame_.empty())
        consider(frameLastByte_ + kFrameGap);
    return next;
}

std::optional<link::Micros> VirtualVehicle::nextEvent() const { return nextInternal(); }

void VirtualVehicle::settle(link::Micros t)
{
    for (auto next = nextInternal(); next && *next <= t; next = nextInternal())
        processAt(*next);
    dropSessionIfSilent(t);
}

void VirtualVehicle::processAt(link::Micros t)
{
    if (!outgoing_.empty() && outgoing_.front().time == t) {
        const Pending p = outgoing_.front();
        outgoing_.pop_front();
        record_.events.push_back({p.time, BusEvent::Kind::Byte, p.origin, p.byte});
        if (p.origin == TraceOrigin::Tester)
            onTesterByte(p.byte, p.time);
        else
            // A unit's byte sent at another rate than the tester's arrives as garbage.
            received_.push_back(p.origin == TraceOrigin::Ecu && !baudHolds(baud_)
                                    ? static_cast<std::uint8_t>(p.byte ^ kGarbled)
                                    : p.byte);
        return;
    }
    if ((wake_ == Wake::LowPulse || wake_ == Wake::FiveBaud) && t == lowEdge_ + kFiveBaudByte) {
        finishAddress();
        return;
    }
    if (!frame_.empty() && t == frameLastByte_ + kFrameGap) {
        completeFrame();
        return;
    }
    if (wake_ == Wake::AwaitInvKb2 && t == wakeDeadline_) {
        refuseWake("no inverted KB2 from the tester");
        return;
    }
    if (wake_ == Wake::AwaitStart && t == wakeDeadline_)
        refuseWake("no StartCommunication 50 ms after the low edge");
}

InitObservation VirtualVehicle::observe(InitObservation::Kind kind) const
{
    InitObservation obs;
    obs.kind = kind;
    obs.lowEdge = lowEdge_;
    obs.idleBefore = idleBefore_;
    return obs;
}

void VirtualVehicle::refuseWake(const std::string& why)
{
    wake_ = Wake::None;
    if (!record_.inits.empty() && record_.inits.back().note.empty())
        record_.inits.back().note = why;
}

// ---- wake-ups -----------------------------------------------------------------------------

void VirtualVehicle::finishAddress()
{
    InitObservation obs = observe(InitObservation::Kind::FiveBaud);
    obs.bitEdges = wakeEdges_;
    const FiveBaudResult r = decodeFiveBaud(lowEdge_, wakeEdges_, kEdgeTolerance);
    obs.worstBitError = r.worstError;
    obs.address = r.address.value_or(-1);
    wake_ = Wake::None;
    if (lineLow_)
        obs.note = "the line was still low at the stop bit";
    else if (!r.address)
        obs.note = "the edges do not fall on the 200 ms bit grid";
    else if (*r.address != kObdAddress)
        obs.note = "no unit answers that address";
    else if (!config_.slowInit)
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
    const link::Micros addressEnd = lowEdge_ + kFiveBaudByte;
    link::Micros end = sendByte(kSync, addressEnd + config_.timing.w1);
    end = sendByte(kb1, end + config_.timing.w2);
    end = sendByte(kb2, end + config_.timing.w3);
    wake_ = Wake::AwaitInvKb2;
    wakeKb1_ = kb1;
    expectedInvKb2_ = static_cast<std::uint8_t>(~kb2);
    wakeDeadline_ = end + kInvKb2Wait;
}

void VirtualVehicle::startCommunication(const Request& request, link::Micros end)
{
    wake_ = Wake::None;
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

void VirtualVehicle::openSession(LineKind protocol, link::Micros at, std::uint8_t kb1)
{
    session_ = Session{protocol, at, {}, 0, protocol == LineKind::Kwp && kb1WantsLengthByte(kb1)};
}

std::uint8_t VirtualVehicle::kb1Of(const EcuModel& unit, bool functional) const
{
    return config_.kwpKb1.value_or(functional ? unit.kwpKb1() : unit.kwpKb1Physical());
}

void VirtualVehicle::setSilent(std::uint8_t unit, bool silent)
{
    settle(clock_.now());
    if (silent)
        silent_.insert(unit);
    else
        silent_.erase(unit);
}

bool VirtualVehicle::silent(const EcuModel& unit) const { return silent_.count(unit.address()) > 0; }

void VirtualVehicle::dropSessionIfSilent(link::Micros t)
{
    if (session_ && t - session_->lastActivity > config_.timing.p3Max) {
        record_.sessionDrops.push_back(session_->lastActivity + config_.timing.p3Max);
        session_.reset();
    }
}

// ---- tester frames ------------------------------------------------------------------------

std::optional<LineKind> VirtualVehicle::listeningProtocol() const
{
    // Without breaks the header is all there is to tell the protocols apart.
    if (config_.noBreaks && wake_ == Wake::None && !frame_.empty())
        return frame_.front() == kIsoRequest ? LineKind::Iso9141 : LineKind::Kwp;
    if (session_)
        return session_->protocol;
    if (wake_ == Wake::AwaitStart)
        return LineKind::Kwp;
    return std::nullopt;
}

void VirtualVehicle::onTesterByte(std::uint8_t byte, link::Micros end)
{
    const link::Micros start = end - byteTime();
    if (frame_.empty()) {
        dropSessionIfSilent(start);
        requestFault_ = Fault::None;
        if (session_) {
            // Requests are numbered in the order the units hear them, as the fault plan counts.
            requestFault_ = config_.faults.forRequest(static_cast<int>(record_.requests.size()));
            record_.requests.push_back({start, requestFault_});
        }
    }
    // The interface hears its own transmission; the faults bend what it hears.
    if (requestFault_ != Fault::NoEcho) {
        const bool collide = requestFault_ == Fault::Collision && frame_.empty();
        outgoing_.push_front({end, TraceOrigin::Echo, static_cast<std::uint8_t>(collide ? byte ^ kCollidedBit : byte)});
    }
    if (!baudHolds(baud_))
        byte ^= kGarbled;
    if (session_)
        session_->lastActivity = end;

    if (wake_ == Wake::AwaitInvKb2) {
        if (byte != expectedInvKb2_) {
            refuseWake("the tester's inverted KB2 was wrong");
            return;
        }
        wake_ = Wake::None;
        const auto inverted = static_cast<std::uint8_t>(wakeFault_ == Fault::WrongInvertedAddress ? kObdAddress
                                                                                                   : ~kObdAddress);
        const link::Micros last = sendByte(inverted, end + config_.timing.w4);
        openSession(*config_.slowInit, last, wakeKb1_);
        return;
    }
    if (wake_ == Wake::LowPulse || wake_ == Wake::FiveBaud)
        return;
    if (wake_ == Wake::AwaitStart && frame_.empty()) {
        InitObservation& obs = record_.inits.back();
        obs.firstByteAfterLow = start - lowEdge_;
        if (std::llabs(obs.firstByteAfterLow - kTWuP) > kEdgeTolerance) {
            refuseWake("StartCommunication did not begin 50 ms after the low edge");
            return;
        }
    }
    frame_.push_back(byte);
    frameLastByte_ = end;
    const auto protocol = listeningProtocol();
    if (!protocol) {
        frame_.clear();
        return;
    }
    const auto size = expectedFrameSize(*protocol, frame_);
    if ((size && frame_.size() >= *size) || frame_.size() > 260)
        completeFrame();
}

void VirtualVehicle::completeFrame()
{
    const auto protocol = listeningProtocol();
    const link::Bytes frame = std::move(frame_);
    frame_.clear();
    const link::Micros end = frameLastByte_;
    if (!protocol)
        return;
    auto request = parseRequest(*protocol, frame);
    if (!request || request->payload.empty())
        return;
    request->time = end;
    const bool startMessage = *protocol == LineKind::Kwp && request->payload.front() == kStartCommunication;
    if (wake_ == Wake::AwaitStart) {
        if (startMessage) {
            record_.inits.back().accepted = true;
            startCommunication(*request, end);
        } else {
            refuseWake("the first message after the fast-init pulse was not StartCommunication");
        }
        return;
    }
    if (config_.noBreaks && session_ && (session_->protocol != *protocol || startMessage))
        session_.reset();
    if (!session_ && config_.noBreaks) {
        // Without breaks the message itself is the wake-up.
        if (startMessage && config_.fastInit) {
            wakeFault_ = config_.faults.forWakeUp(wakeUps_++);
            InitObservation obs;
            obs.kind = InitObservation::Kind::FastInit;
            obs.lowEdge = end;
            obs.accepted = true;
            obs.note = "StartCommunication without a low pulse";
            record_.inits.push_back(obs);
            startCommunication(*request, end);
            return;
        }
        // A request in the protocol the car's 5-baud wake-up opens finds the units listening.
        if (startMessage || config_.slowInit != *protocol)
            return;
        openSession(*protocol, end, units_.empty() ? 0 : kb1Of(*units_.front(), true));
    }
    if (!session_)
        return;
    if (!request->addressed && session_->shortHeaderUnit) {
        request->functional = false;
        request->target = *session_->shortHeaderUnit;
        request->source = session_->shortHeaderTester;
    }
    handleRequest(*request, end);
}

// ---- replies ------------------------------------------------------------------------------

std::vector<EcuModel*> VirtualVehicle::unitsByRank() const
{
    std::vector<EcuModel*> out;
    for (const auto& u : units_)
        out.push_back(u.get());
    std::stable_sort(out.begin(), out.end(), [](auto* a, auto* b) { return a->replyRank() < b->replyRank(); });
    return out;
}

void VirtualVehicle::handleRequest(const Request& request, link::Micros end)
{
    const Fault fault = requestFault_;
    const EcuTiming& tm = config_.timing;
    if (fault == Fault::Silence)
        return;
    if (fault == Fault::DropSession) {
        record_.sessionDrops.push_back(end);
        session_.reset();
        return;
    }
    const std::uint8_t service = request.payload.front();
    if (request.protocol == LineKind::Kwp && service == kStartCommunication) {
        // A StartCommunication inside a session is answered as a new start.
        startCommunication(request, end);
        return;
    }

    struct Answer {
        EcuModel* unit;
        std::vector<link::Bytes> payloads;
    };
    std::vector<Answer> answers;
    for (EcuModel* unit : unitsByRank()) {
        if ((!request.functional && request.target != unit->address()) || silent(*unit))
            continue;
        auto payloads = unit->answer(request);
        if (!payloads.empty())
            answers.push_back({unit, std::move(payloads)});
    }
    const link::Micros gap = fault == Fault::LateReply ? tm.p2Late : tm.p2;
    const KwpHeader form{request.addressed, session_->lengthByte};
    link::Micros at = end + gap;
    if (fault == Fault::Noise) {
        // Stray bytes on the line shortly before the first reply.
        link::Bytes stray = config_.faults.noise;
        for (int i = 0; i < 2 && config_.faults.noise.empty(); ++i) {
            noise_ = noise_ * 6364136223846793005ull + 1442695040888963407ull;
            stray.push_back(static_cast<std::uint8_t>(noise_ >> 56));
        }
        link::Micros t = end + tm.p1;
        for (std::uint8_t b : stray)
            t = sendByte(b, t) + tm.p1;
    }
    for (std::size_t i = 0; i < answers.size(); ++i) {
        Answer& a = answers[i];
        // Faults of the reply strike the unit that answers last (the engine unit).
        const bool struck = i + 1 == answers.size();
        if (struck && fault == Fault::NegativeReply)
            a.payloads = {negative(service, kConditionsNotCorrect)};
        if (struck && fault == Fault::ResponsePending)
            a.payloads.insert(a.payloads.begin(), negative(service, kResponsePending));
        for (std::size_t k = 0; k < a.payloads.size(); ++k) {
            const link::Bytes& payload = a.payloads[k];
            link::Bytes frame = replyFrame(request.protocol, a.unit->address(), request.source, payload, form);
            if (struck && fault == Fault::BadChecksum && k + 1 == a.payloads.size())
                frame.back() = static_cast<std::uint8_t>(frame.back() + 1);
            // A unit that said it is busy takes its time before the real answer.
            const bool busy = payload.size() == 3 && payload[0] == kNegativeReply && payload[2] == kResponsePending;
            at = sendFrame(frame, at) + (busy ? tm.pending : gap);
        }
    }
}

link::Micros VirtualVehicle::sendByte(std::uint8_t byte, link::Micros start, TraceOrigin origin)
{
    const link::Micros end = std::max(start, unitLineFree_) + byteTime();
    auto at = std::upper_bound(outgoing_.begin(), outgoing_.end(), end,
                               [](link::Micros v, const Pending& p) { return v < p.time; });
    outgoing_.insert(at, {end, origin, byte});
    unitLineFree_ = end;
    if (session_)
        session_->lastActivity = std::max(session_->lastActivity, end);
    return end;
}

link::Micros VirtualVehicle::sendFrame(const link::Bytes& frame, link::Micros start)
{
    record_.framesSent.push_back(frame);
    link::Micros end = start;
    for (std::size_t i = 0; i < frame.size(); ++i)
        end = sendByte(frame[i], i == 0 ? start : end + config_.timing.p1);
    if (session_)
        session_->lastActivity = std::max(session_->lastActivity, end);
    return end;
}

} // namespace kvx::sim
