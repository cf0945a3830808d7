#include "link/LinkSession.h"

#include "link/Elm327Engine.h"
#include "link/Hex.h"
#include "link/KLineEngine.h"
#include "link/LinkError.h"
#include "link/ProtocolBytes.h"
#include "link/ReplyText.h"

namespace kvx::link {

namespace {

Bytes requireHex(const std::string& text, const char* what)
{
    auto bytes = fromHex(text);
    if (!bytes || bytes->empty())
        throw LinkError(LinkError::Kind::BadRequest, std::string(what) + " '" + text + "' is not hex byte pairs.");
    return *bytes;
}

Protocol wakeUpProtocol(int number)
{
    if (number < Iso9141Slow || number > kLastProtocol)
        throw LinkError(LinkError::Kind::BadRequest,
                        "Protocol " + std::to_string(number) + " is not one of 1 to " + std::to_string(kLastProtocol) + ".");
    return static_cast<Protocol>(number);
}

// A start frame is a whole addressed StartCommunication message, sent by the fast init alone.
Bytes startFrameOf(const std::string& text, Protocol protocol)
{
    const Bytes f = requireHex(text, "The start frame");
    if (protocol != Kwp2000Fast)
        throw LinkError(LinkError::Kind::BadRequest, "A start frame needs the KWP2000 fast init (protocol 3).");
    const bool addressed = f.size() >= kline::kKwpAddressedHeader + 2 && (f[0] & kline::kAddressMode) != 0;
    if (!addressed || checksum(Bytes(f.begin(), f.end() - 1)) != f.back())
        throw LinkError(LinkError::Kind::BadRequest,
                        "The start frame " + toHex(f) + " is not an addressed message ending in its checksum.");
    return f;
}

std::string joined(const std::vector<Bytes>& frames)
{
    std::string out;
    for (const auto& f : frames) {
        if (!out.empty())
            out += ':';
        out += toHex(f);
    }
    return out;
}

} // namespace

LinkSession::LinkSession(WireFactory wires, Clock& clock)
    : wires_(std::move(wires)),
      clock_(clock),
      kline_(std::make_unique<KLineEngine>(wires_, clock_)),
      elm_(std::make_unique<Elm327Engine>(wires_, clock_)),
      engine_(kline_.get())
{
    stopwatchStart_ = stopwatchLap_ = clock_.now();
}

LinkSession::~LinkSession() = default;

bool LinkSession::InitializeEcu(const std::string& wakeAddress, int baudRate, int portNumber, int protocol,
                                const std::string& startFrame, bool reconnect, std::string& result)
{
    WakeUpRequest rq;
    // The Nissan modes pass no wake-up address; their start frame carries the target.
    if (!wakeAddress.empty()) {
        const Bytes a = requireHex(wakeAddress, "The wake-up address");
        if (a.size() != 1)
            throw LinkError(LinkError::Kind::BadRequest, "The wake-up address '" + wakeAddress + "' is not one byte.");
        rq.address = a[0];
    }
    rq.baud = baudRate;
    rq.port = portNumber;
    rq.protocol = wakeUpProtocol(protocol);
    if (!startFrame.empty())
        rq.startFrame = startFrameOf(startFrame, rq.protocol);
    rq.reconnect = reconnect;
    const WakeUpResult r = engine_->wakeUp(rq);
    result = r.ok ? r.text : std::string();
    return r.ok;
}

std::string LinkSession::EncodeRequest(const std::string& request)
{
    return toHex(engine_->encode(requireHex(request, "The request")));
}

std::string LinkSession::Transact(const std::string& frame)
{
    std::vector<Bytes> replies = engine_->transact(requireHex(frame, "The frame"));
    for (auto& f : replies)
        f = engine_->replyForm(f);
    return joined(replies);
}

std::string LinkSession::DecodeReply(const std::string& raw)
{
    // Keeps the messages of a raw reply that are whole hex, each as it arrived; a damaged message
    // (from a hand-edited capture, say) is left out rather than handed to the decoders. Replies to
    // bodies are read by their length byte, so their checksum, checked on arrival, is left off.
    const bool bodies = engine_->bodySession();
    std::vector<Bytes> messages;
    for (const std::string& message : splitReply(raw)) {
        auto bytes = fromHex(message);
        if (!bytes || bytes->size() < (bodies ? 2u : 1u))
            continue;
        if (bodies)
            bytes->pop_back();
        messages.push_back(std::move(*bytes));
    }
    return joined(messages);
}

std::string LinkSession::ComputeChecksum(const std::string& hex) const
{
    return toHex(checksum(requireHex(hex, "The message")));
}

void LinkSession::SetInterface(InterfaceType type, int adapterBaud)
{
    elm_->setAdapterBaud(adapterBaud);
    LinkEngine* chosen = type == InterfaceType::Elm327 ? static_cast<LinkEngine*>(elm_.get()) : kline_.get();
    if (chosen == engine_)
        return;
    engine_->closePort();
    engine_ = chosen;
}

bool LinkSession::SearchesProtocols() const { return engine_->searchesProtocols(); }
int LinkSession::ProtocolInUse() const { return engine_->protocolInUse(); }

bool LinkSession::IsPortOpen() const { return engine_->portOpen(); }

void LinkSession::ClosePort(int) { engine_->closePort(); }

// Both engines hold the timings, so a change of interface keeps what the settings pushed.
void LinkSession::SetP3Delay(int ms)
{
    kline_->setP3(ms);
    elm_->setP3(ms);
}
int LinkSession::GetP3Delay() const { return engine_->p3(); }
void LinkSession::SetP4Delay(int ms)
{
    kline_->setP4(ms);
    elm_->setP4(ms);
}
void LinkSession::SetInterByteDelay(int ms)
{
    kline_->setInterByte(ms);
    elm_->setInterByte(ms);
}
void LinkSession::SetKwp2000InitDelay(const std::string& ms)
{
    kline_->setKwpInitDelay(ms);
    elm_->setKwpInitDelay(ms);
}

void LinkSession::StartStopwatch() { stopwatchStart_ = stopwatchLap_ = clock_.now(); }
void LinkSession::LapStopwatch() { stopwatchLap_ = clock_.now(); }
// Ten-thousandths of a second between the start and the last lap.
FixedSeconds LinkSession::ReadStopwatch() const { return (stopwatchLap_ - stopwatchStart_) / 100; }

void LinkSession::setIdleHook(std::function<void()> hook)
{
    kline_->setIdleHook(hook);
    elm_->setIdleHook(std::move(hook));
}

void LinkSession::setTraceSink(TraceSink* sink)
{
    kline_->setTrace(sink);
    elm_->setTrace(sink);
}

} // namespace kvx::link
