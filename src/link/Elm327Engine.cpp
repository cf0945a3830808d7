#include "link/Elm327Engine.h"

#include "link/CanReplies.h"
#include "link/ElmAnswer.h"
#include "link/LinkError.h"
#include "link/Protocol.h"
#include "link/ProtocolBytes.h"

#include <algorithm>

namespace kvx::link {

namespace {

constexpr Micros kBaudProbeTimeout = ms(300);
constexpr Micros kResetTimeout = ms(3000);
constexpr Micros kCommandTimeout = ms(1000);
// A 5-baud wake-up alone takes about two seconds; a unit may ask for up to five more.
constexpr Micros kInitTimeout = ms(8000);
constexpr Micros kRequestTimeout = ms(8000);
// The adapter's own search tries every protocol it knows, with a wake-up each.
constexpr Micros kSearchTimeout = ms(30000);

using kline::kNegativeReply;
using kline::kObdAddress;
using kline::kResponsePending;
// CAN units answer on 7E8 + n for request identifier 7E0 + n; n is the unit 10 + 8n.
constexpr std::uint8_t kFirstUnit = 0x10;
constexpr std::uint8_t kUnitStep = 8;
constexpr int kFirstRequestId = 0x7E0;

constexpr const char* kIdentity = "ELM327";
constexpr const char* kSupportedRequest = "0100";

// The adapter's protocol digit for each of ours, index = our number.
constexpr char kAdapterProtocol[] = {'?', '3', '4', '5', '0', '6', '7', '8', '9'};

int ourProtocol(char adapterDigit)
{
    for (int p = 1; p <= kLastProtocol; ++p)
        if (p != TryAll && kAdapterProtocol[p] == adapterDigit)
            return p;
    return 0;
}

bool contains(const std::vector<std::string>& lines, const std::string& text)
{
    return std::any_of(lines.begin(), lines.end(), [&](const std::string& l) { return l.find(text) != std::string::npos; });
}

std::string joined(const std::vector<std::string>& lines)
{
    std::string out;
    for (const auto& l : lines)
        out += (out.empty() ? "" : " / ") + l;
    return out;
}

bool isPending(const Bytes& frame)
{
    return frame.size() >= kline::kIsoHeaderSize + 3 && frame[kline::kIsoHeaderSize] == kNegativeReply &&
           frame[kline::kIsoHeaderSize + 2] == kResponsePending;
}

} // namespace

Elm327Engine::Elm327Engine(WireFactory& wires, Clock& clock)
    : port_(wires, InterfaceType::Elm327, [this] { dropSession(); }), clock_(clock)
{
}

Elm327Engine::~Elm327Engine() = default;

void Elm327Engine::setIdleHook(std::function<void()> hook)
{
    idle_ = std::move(hook);
    if (dialogue_)
        dialogue_->setIdleHook(idle_);
}

void Elm327Engine::setTrace(TraceSink* trace)
{
    trace_ = trace;
    if (dialogue_)
        dialogue_->setTrace(trace_);
}

void Elm327Engine::note(const std::string& text) const
{
    if (trace_)
        trace_->note(clock_.now(), text);
}

WakeUpResult Elm327Engine::wakeUp(const WakeUpRequest& rq)
{
    return port_.wakeUp(rq.reconnect, [&] { return wakeUpOnAdapter(rq); });
}

WakeUpResult Elm327Engine::wakeUpOnAdapter(const WakeUpRequest& rq)
{
    openAdapter(rq.port);
    protocol_ = 0;
    bodyAddresses_.reset();
    expectOk(std::string("ATSP") + kAdapterProtocol[rq.protocol]);

    WakeUpResult r;
    if (rq.protocol == TryAll) {
        r.ok = probe(kSupportedRequest, kSearchTimeout);
        if (r.ok)
            protocol_ = searchedProtocol();
    } else if (IsCan(rq.protocol)) {
        setHeader(IsExtendedCan(rq.protocol) ? "18DB33F1" : "7DF");
        r.ok = probe(kSupportedRequest, kRequestTimeout);
        if (r.ok)
            protocol_ = rq.protocol;
    } else {
        if (rq.address != kObdAddress)
            expectOk("ATIIA" + toHex(rq.address));
        // The adapter sends StartCommunication under the header in force.
        if (!rq.startFrame.empty())
            setHeader(toHex(Bytes(rq.startFrame.begin(), rq.startFrame.begin() + 3)));
        else
            setHeader(rq.protocol == Iso9141Slow ? "686AF1" : "C133F1");
        const std::string init = rq.protocol == Kwp2000Fast ? "ATFI" : "ATSI";
        const ElmAnswer answer = readElmAnswer(dialogue_->command(init, kInitTimeout), init);
        r.ok = answer.busInitOk && answer.kind != ElmAnswer::Kind::NoConnection;
        if (r.ok) {
            protocol_ = rq.protocol;
            if (!rq.startFrame.empty())
                bodyAddresses_ = std::make_pair(rq.startFrame[1], rq.startFrame[2]);
            note("the adapter keeps the K-line session alive by itself between requests");
        }
    }
    return r;
}

void Elm327Engine::openAdapter(int port)
{
    if (!port_.open(port) && dialogue_)
        return;
    dialogue_ = std::make_unique<ElmDialogue>(port_.wire(), clock_, trace_, idle_);
    baudInUse_ = findBaud();
    setUp();
}

int Elm327Engine::findBaud()
{
    if (adapterBaud_ != kElmAutoBaud) {
        port_.wire().setBaud(adapterBaud_);
        return adapterBaud_;
    }
    for (int baud : kElmBauds) {
        port_.wire().setBaud(baud);
        const auto lines = greet("ATI", kBaudProbeTimeout);
        if (lines && contains(*lines, kIdentity)) {
            note("the adapter answers at " + std::to_string(baud) + " baud");
            return baud;
        }
    }
    throw LinkError(LinkError::Kind::Adapter,
                    "No ELM327 answered on " + port_.describe() +
                        " at 38400, 9600, 115200 or 500000 baud: is the adapter plugged into the car (it takes its "
                        "power from the socket), and is ELM327 the right interface type?");
}

void Elm327Engine::setUp()
{
    const auto reset = greet("ATZ", kResetTimeout);
    if (!reset)
        throw LinkError(LinkError::Kind::Adapter,
                        "The device on " + port_.describe() + " did not answer the reset (ATZ) at " +
                            std::to_string(baudInUse_) + " baud: set the adapter baud in the settings, or let it be found.");
    if (!contains(*reset, kIdentity))
        throw LinkError(LinkError::Kind::Adapter,
                        "The device on " + port_.describe() + " answered the reset (ATZ) with \"" + joined(*reset) +
                            "\", not as an ELM327 adapter does: choose the interface type that matches the cable in the "
                            "settings.");
    dialogue_->command("ATI", kCommandTimeout);
    for (const char* command : {"ATE0", "ATL0", "ATS0", "ATH1"})
        expectOk(command);
    header_.clear();
}

std::optional<std::vector<std::string>> Elm327Engine::greet(const std::string& command, Micros timeout)
{
    // Bytes left on the adapter's input by another program (or by the K-line engine tried first)
    // join the first command, which the adapter then answers "?"; that answer ends the stray line,
    // so the command sent again is read on its own.
    auto lines = dialogue_->tryCommand(command, timeout);
    if (lines && lines->size() == 1 && lines->front() == "?")
        lines = dialogue_->tryCommand(command, timeout);
    return lines;
}

void Elm327Engine::expectOk(const std::string& command)
{
    const auto lines = dialogue_->command(command, kCommandTimeout);
    if (contains(lines, "OK"))
        return;
    throw LinkError(LinkError::Kind::Adapter,
                    "The adapter answered \"" + joined(lines) + "\" to " + command +
                        (contains(lines, "?") ? ": it does not know the command, so it is not a full ELM327 compatible."
                                              : " instead of OK."));
}

void Elm327Engine::setHeader(const std::string& header)
{
    if (header == header_)
        return;
    expectOk("ATSH" + header);
    header_ = header;
}

bool Elm327Engine::probe(const std::string& request, Micros timeout)
{
    const ElmAnswer answer = readElmAnswer(dialogue_->command(request, timeout), request);
    return answer.kind == ElmAnswer::Kind::Data;
}

int Elm327Engine::searchedProtocol()
{
    const auto lines = dialogue_->command("ATDPN", kCommandTimeout);
    const std::string found = lines.empty() ? std::string() : lines.back();
    // "A6": automatic search, found 6.
    const char digit = found.empty() ? '?' : found.back();
    const int protocol = ourProtocol(digit);
    if (protocol == 0)
        throw LinkError(LinkError::Kind::Adapter,
                        "The adapter found the car on its protocol \"" + found +
                            "\" (SAE J1850 or another this program does not read); choose a protocol in the settings.");
    note("the adapter's search found protocol " + std::to_string(protocol) + " (" + ProtocolName(protocol) + ")");
    return protocol;
}

std::string Elm327Engine::headerFor(const Bytes& frame) const
{
    if (!IsCan(protocol_))
        return toHex(Bytes(frame.begin(), frame.begin() + 3));
    const std::uint8_t target = frame[1];
    const bool functional = target == kObdAddress || target == kline::kIsoRequestTarget;
    if (IsExtendedCan(protocol_))
        return functional ? "18DB33F1" : "18DA" + toHex(target) + "F1";
    if (functional || target < kFirstUnit)
        return "7DF";
    const int id = kFirstRequestId + (target - kFirstUnit) / kUnitStep;
    static constexpr char digits[] = "0123456789ABCDEF";
    return {digits[(id >> 8) & 0xF], digits[(id >> 4) & 0xF], digits[id & 0xF]};
}

Bytes Elm327Engine::encode(const Bytes& request) const
{
    // The adapter adds the length and the checksum; what goes to it is the header and the payload.
    if (!bodyAddresses_) {
        if (request.size() < 4)
            throw LinkError(LinkError::Kind::BadRequest,
                            "The request " + toHex(request) + " holds no service after its three header bytes.");
        return request;
    }
    if (request.size() < 2 || request[0] != request.size() - 1)
        throw LinkError(LinkError::Kind::BadRequest,
                        "The body " + toHex(request) + " does not start with the length of what follows it.");
    Bytes frame{kline::kPhysical, bodyAddresses_->first, bodyAddresses_->second};
    frame.insert(frame.end(), request.begin() + 1, request.end());
    return frame;
}

std::vector<Bytes> Elm327Engine::transact(const Bytes& frame)
{
    if (!portOpen())
        throw LinkError(LinkError::Kind::PortLost, "The port is not open: connect to the vehicle first.");
    if (frame.size() < 4)
        throw LinkError(LinkError::Kind::BadRequest, "There is no frame to send.");
    EnginePort::Exchange exchange(port_);
    setHeader(headerFor(frame));
    const std::string request = toHex(Bytes(frame.begin() + 3, frame.end()));
    const ElmAnswer answer = readElmAnswer(dialogue_->command(request, kRequestTimeout), request);
    if (answer.kind == ElmAnswer::Kind::NoConnection)
        note("the adapter could not wake the car up again; the request counts as unanswered");
    if (answer.kind != ElmAnswer::Kind::Data)
        return {};

    std::vector<Bytes> frames;
    if (IsCan(protocol_)) {
        std::vector<CanLine> lines;
        for (const std::string& text : answer.data) {
            if (auto line = readCanLine(text, IsExtendedCan(protocol_)))
                lines.push_back(std::move(*line));
            else if (trace_)
                trace_->dropped(clock_.now(), fromHex(text).value_or(Bytes{}), "a line that is no CAN frame: " + text);
        }
        CanMessages messages = normaliseCanAnswer(lines);
        for (const std::string& n : messages.notes)
            note(n);
        return std::move(messages.messages);
    }
    // With headers on, a K-line answer line is the whole frame with its checksum.
    for (const std::string& text : answer.data) {
        const auto bytes = fromHex(text);
        if (!bytes || bytes->size() < 2 || checksum(Bytes(bytes->begin(), bytes->end() - 1)) != bytes->back()) {
            if (trace_)
                trace_->dropped(clock_.now(), bytes.value_or(Bytes{}), "a frame whose checksum does not hold: " + text);
            continue;
        }
        if (isPending(*bytes))
            continue;
        frames.push_back(*bytes);
    }
    return frames;
}

Bytes Elm327Engine::replyForm(const Bytes& frame) const
{
    return bodyAddresses_ ? bodyOf(LineKind::Kwp, frame) : frame;
}

bool Elm327Engine::portOpen() const { return port_.isOpen() && dialogue_; }

void Elm327Engine::closePort() { port_.close(); }

void Elm327Engine::dropSession()
{
    dialogue_.reset();
    baudInUse_ = 0;
    protocol_ = 0;
    header_.clear();
    bodyAddresses_.reset();
}

} // namespace kvx::link
