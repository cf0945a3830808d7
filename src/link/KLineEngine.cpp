#include "link/KLineEngine.h"

#include "link/KLineTiming.h"
#include "link/LinkError.h"
#include "link/Protocol.h"
#include "link/ReplyCollector.h"

#include <algorithm>
#include <charconv>

namespace kvx::link {

using namespace kline;

namespace {
// Long waits are cut into slices this long so a window stays responsive between them.
constexpr Micros kIdleSlice = ms(10);
constexpr Micros kTiniHNominal = kTWuP - kTiniL;
constexpr Micros kP4Margin = ms(5);
} // namespace

KLineEngine::KLineEngine(WireFactory& wires, Clock& clock)
    : port_(wires, InterfaceType::KLineCable, [this] { dropSession(); },
            [this] {
                if (io_)
                    lastActivity_ = io_->lastActivity();
            }),
      clock_(clock)
{
}

KLineEngine::~KLineEngine() = default;

void KLineEngine::setP4(int msValue)
{
    // A pause beyond P4max lets a unit take the request as finished. A loaded machine wakes from a
    // sleep some milliseconds late, so settings are held 5 ms below it.
    p4_ = std::clamp<Micros>(ms(msValue), 0, kP4Max - kP4Margin);
}

void KLineEngine::setInterByte(int msValue)
{
    // InterByteDelay is the tester's margin beyond W4min before it sends the inverted KB2.
    w4_ = std::clamp<Micros>(kW4Min + ms(msValue), kW4Min, kW4Max);
}

void KLineEngine::setKwpInitDelay(const std::string& msText)
{
    // Kwp2000InitDelay is the line's high time between the fast-init low pulse and StartCommunication,
    // held to 25 ± 1 ms so the wake-up pattern stays inside its window; text that is no number is ignored.
    int v = 0;
    const auto [end, ec] = std::from_chars(msText.data(), msText.data() + msText.size(), v);
    if (ec != std::errc() || end == msText.data())
        return;
    kwpHigh_ = std::clamp<Micros>(ms(v), kTiniHNominal - kFastInitTolerance, kTiniHNominal + kFastInitTolerance);
}

void KLineEngine::idleUntil(Micros t)
{
    if (!idle_) {
        clock_.sleepUntil(t);
        return;
    }
    while (clock_.now() < t) {
        idle_();
        clock_.sleepUntil(std::min(t, clock_.now() + kIdleSlice));
    }
}

void KLineEngine::openPort(int port, bool reconnect)
{
    if (!port_.open(port)) {
        if (trace_)
            trace_->note(clock_.now(), reconnect ? "waking the unit again on the open port" : "port already open");
        return;
    }
    // The bus may have been busy just before: W5 counts from the opening.
    lastActivity_ = clock_.now();
}

WakeUpResult KLineEngine::wakeUp(const WakeUpRequest& rq)
{
    if (IsCan(rq.protocol))
        throw LinkError(LinkError::Kind::BadRequest,
                        "Protocol " + std::to_string(rq.protocol) + " (" + ProtocolName(rq.protocol) +
                            ") is CAN, which a K-line cable cannot reach: choose the ELM327 interface in the "
                            "settings, or a K-line protocol (1, 2, 3 or Try All).");
    if (rq.protocol != Iso9141Slow && rq.protocol != Kwp2000Slow && rq.protocol != Kwp2000Fast)
        throw LinkError(LinkError::Kind::BadRequest,
                        "Protocol " + std::to_string(rq.protocol) + " is not 1, 2 or 3; try the protocols one at a time.");
    if (rq.baud < kMinBaud || rq.baud > kMaxBaud)
        throw LinkError(LinkError::Kind::BaudRefused, "The baud rate " + std::to_string(rq.baud) + " is outside " +
                                                          std::to_string(kMinBaud) + " to " + std::to_string(kMaxBaud) +
                                                          "; K-line units talk at 10400.");
    return port_.wakeUp(rq.reconnect, [&] { return wakeUpOnPort(rq); });
}

WakeUpResult KLineEngine::wakeUpOnPort(const WakeUpRequest& rq)
{
    openPort(rq.port, rq.reconnect);
    port_.wire().setBaud(rq.baud);
    io_ = std::make_unique<ByteLink>(port_.wire(), clock_, trace_, rq.baud);
    io_->touch(lastActivity_);

    const Micros quietFrom = lastActivity_;
    idleUntil(quietFrom + kW5Min);
    if (trace_)
        trace_->timing(clock_.now(), {"W5 (idle before the wake-up)", clock_.now() - quietFrom, kW5Min, kP3Max});

    const WakeUpTiming timing{w4_, kwpHigh_, p4_};
    WakeUpResult r;
    if (rq.protocol == Kwp2000Fast) {
        const Bytes functionalStart{kFunctional, rq.address, kTester, kStartCommunication};
        const Bytes start = rq.startFrame.empty() ? encodeRequest(LineKind::Kwp, functionalStart, {}) : rq.startFrame;
        r = fastInit(*io_, clock_, trace_, start, timing);
    } else {
        r = fiveBaudInit(*io_, clock_, trace_, rq.address, rq.protocol, timing, idle_);
    }
    if (r.ok) {
        kind_ = r.meaning.kwp ? LineKind::Kwp : LineKind::Iso9141;
        protocol_ = rq.protocol;
        form_ = r.meaning.form;
        bodyAddresses_.reset();
        if (!rq.startFrame.empty())
            bodyAddresses_ = std::make_pair(rq.startFrame[1], rq.startFrame[2]);
        if (trace_)
            trace_->note(clock_.now(), "key bytes " + toHex(r.kb1) + " " + toHex(r.kb2) + ": units may answer " +
                                           std::to_string(r.meaning.p2Min / 1000) + " ms after a request" +
                                           (r.meaning.kwp ? std::string(", headers ") +
                                                                (form_.addresses ? "with addresses" : "without addresses") +
                                                                (form_.lengthInFormat ? ", length in the format byte"
                                                                                      : ", separate length byte")
                                                          : std::string()));
    }
    return r;
}

LineKind KLineEngine::kindFor(const Bytes& request) const
{
    if (kind_)
        return *kind_;
    return !request.empty() && request[0] == kIsoRequest ? LineKind::Iso9141 : LineKind::Kwp;
}

Bytes KLineEngine::encode(const Bytes& request) const
{
    if (bodyAddresses_)
        return encodeBody(form_, bodyAddresses_->first, bodyAddresses_->second, request);
    return encodeRequest(kindFor(request), request, form_);
}

Bytes KLineEngine::replyForm(const Bytes& frame) const
{
    return bodyAddresses_ ? bodyOf(kind_.value_or(LineKind::Kwp), frame) : frame;
}

std::vector<Bytes> KLineEngine::transact(const Bytes& frame)
{
    if (!portOpen())
        throw LinkError(LinkError::Kind::PortLost, "The port is not open: connect to the vehicle first.");
    if (frame.empty())
        throw LinkError(LinkError::Kind::BadRequest, "There is no frame to send.");
    EnginePort::Exchange exchange(port_);
    const Micros quietFrom = io_->lastActivity();
    // Below P3min a unit may still be answering; beyond P3max it has given the session up.
    const Micros p3 = std::clamp(ms(p3Ms_), kP3Min, kP3Max);
    idleUntil(quietFrom + p3);
    if (trace_)
        trace_->timing(clock_.now(), {"P3 (last byte to request)", clock_.now() - quietFrom, p3, kP3Max});
    io_->discardInput("stray bytes before the request");
    io_->sendFrame(frame, p4_);
    const LineKind kind = kind_ ? *kind_ : kindFor(frame);
    CollectedReplies replies = collectReplies(*io_, kind, replyAddressing(frame), idle_, trace_);
    badChecksums_ += replies.badChecksums;
    return std::move(replies.frames);
}

ReplyAddressing KLineEngine::replyAddressing(const Bytes& frame) const
{
    // Bodies name the tester in the start frame; generic requests carry it as their source.
    if (bodyAddresses_)
        return {bodyAddresses_->second, !form_.addresses};
    return {frame.size() > 2 ? frame[2] : kTester, false};
}

bool KLineEngine::portOpen() const { return port_.isOpen() && io_; }

void KLineEngine::closePort() { port_.close(); }

void KLineEngine::dropSession()
{
    io_.reset();
    kind_.reset();
    protocol_ = 0;
    bodyAddresses_.reset();
}

} // namespace kvx::link
