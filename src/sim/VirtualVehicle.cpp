#include "sim/VirtualVehicle.h"

#include "link/KLineTiming.h"
#include "sim/KLineFrames.h"

#include <algorithm>
#include <cstdlib>

namespace kvx::sim {

using link::LineKind;
using link::TraceOrigin;
using namespace link::kline;

namespace {

constexpr int kBusBaud = 10400;
// A tester frame ends when no byte follows for this long (P4 allows at most 20 ms between bytes).
constexpr link::Micros kFrameGap = link::ms(25);
// A byte sent at another rate than the receiver's arrives as garbage; a collision flips a bit.
constexpr std::uint8_t kGarbled = 0xA5;
constexpr std::uint8_t kCollidedBit = 0x10;
// Longer than any message: the rest of a frame whose length never tells is cut off here.
constexpr std::size_t kLongestFrame = 260;

// Within 2 %; worked in 64 bits so no rate a tester may ask for overflows the test.
bool baudHolds(int baud) { return std::llabs(static_cast<long long>(baud) - kBusBaud) * 50 <= kBusBaud; }

} // namespace

VirtualVehicle::VirtualVehicle(link::Clock& clock, VehicleConfig config) : clock_(clock), config_(std::move(config))
{
    line_.setBaud(baud_);
    if (config_.units.empty())
        config_.units = configFor(builtInVehicle(), config_.seed).units;
    for (auto& make : config_.units)
        units_.push_back(make(clock_, config_.seed));
}

VirtualVehicle::~VirtualVehicle() = default;

void VirtualVehicle::setBaud(int baud)
{
    settle(clock_.now());
    baud_ = baud;
    line_.setBaud(baud);
}

// ---- the tester's side --------------------------------------------------------------------

void VirtualVehicle::testerWrite(const link::Bytes& bytes)
{
    const link::Micros t = clock_.now();
    settle(t);
    line_.tester(bytes, t);
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
    auto consider = [&next](std::optional<link::Micros> t) {
        if (t && (!next || *t < *next))
            next = t;
    };
    consider(line_.next());
    consider(wakeUp_.addressEnd());
    if (handshake_ != Handshake::None && frame_.empty())
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
    if (const auto b = line_.take(t)) {
        record_.events.push_back({b->time, BusEvent::Kind::Byte, b->origin, b->value});
        lastByte_ = b->time;
        if (b->origin == TraceOrigin::Tester)
            onTesterByte(b->value, b->time);
        else
            // A unit's byte sent at another rate than the tester's arrives as garbage.
            received_.push_back(b->origin == TraceOrigin::Ecu && !baudHolds(baud_)
                                    ? static_cast<std::uint8_t>(b->value ^ kGarbled)
                                    : b->value);
        return;
    }
    if (wakeUp_.addressEnd() == t) {
        finishAddress();
        return;
    }
    if (!frame_.empty() && t == frameLastByte_ + kFrameGap) {
        completeFrame();
        return;
    }
    if (handshake_ == Handshake::AwaitInvKb2 && t == wakeDeadline_) {
        refuseWake("no inverted KB2 from the tester");
        return;
    }
    if (handshake_ == Handshake::AwaitStart && t == wakeDeadline_)
        refuseWake("no StartCommunication 50 ms after the low edge");
}

// ---- sessions -----------------------------------------------------------------------------

void VirtualVehicle::openSession(LineKind protocol, link::Micros at, std::uint8_t kb1)
{
    session_ = Session{protocol, at, {}, 0, protocol == LineKind::Kwp && kb1WantsLengthByte(kb1)};
}

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
    if (config_.noBreaks && config_.bus == Bus::KLine && handshake_ == Handshake::None && !wakeUp_.busy() && !frame_.empty())
        return frame_.front() == kIsoRequest ? LineKind::Iso9141 : LineKind::Kwp;
    if (session_)
        return session_->protocol;
    if (handshake_ == Handshake::AwaitStart)
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
            requestFault_ = config_.faults.forRequest(static_cast<int>(record_.requests.total()));
            record_.requests.push_back({start, requestFault_});
        }
    }
    // The interface hears its own transmission; the faults bend what it hears.
    if (requestFault_ != Fault::NoEcho) {
        const bool collide = requestFault_ == Fault::Collision && frame_.empty();
        line_.echo(static_cast<std::uint8_t>(collide ? byte ^ kCollidedBit : byte), end);
    }
    if (!baudHolds(baud_))
        byte ^= kGarbled;
    if (session_)
        session_->lastActivity = end;

    if (handshake_ == Handshake::AwaitInvKb2) {
        invertedKb2(byte, end);
        return;
    }
    if (wakeUp_.busy())
        return;
    if (handshake_ == Handshake::AwaitStart && frame_.empty()) {
        InitObservation& obs = record_.inits.back();
        obs.firstByteAfterLow = start - wakeUp_.lowEdge();
        if (std::llabs(obs.firstByteAfterLow - kTWuP) > kUnitEdgeTolerance) {
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
    if ((size && frame_.size() >= *size) || frame_.size() > kLongestFrame)
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
    if (handshake_ == Handshake::AwaitStart) {
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

} // namespace kvx::sim
