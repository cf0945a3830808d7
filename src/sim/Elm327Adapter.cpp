#include "sim/Elm327Adapter.h"

#include "link/LinkError.h"

#include <algorithm>
#include <cctype>

namespace kvx::sim {

namespace {

constexpr const char* kVersion = "ELM327 v1.5";
constexpr const char* kDescription = "OBDII to RS232 Interpreter";
constexpr const char* kBatteryVoltage = "13.8V";
constexpr char kPrompt = '>';

// The settings nobody needs answered beyond OK: memory, long messages, CAN formatting and flow
// control, response headers of the ISO kind; ELM327 software sends them while setting up.
constexpr const char* kAccepted[] = {"M0", "M1", "AL", "NL", "CAF0", "CAF1", "CFC0", "CFC1", "V0", "V1", "R0", "R1", "D0", "D1"};

const char* protocolName(char p)
{
    switch (p) {
    case '1': return "SAE J1850 PWM";
    case '2': return "SAE J1850 VPW";
    case '3': return "ISO 9141-2";
    case '4': return "ISO 14230-4 (KWP 5BAUD)";
    case '5': return "ISO 14230-4 (KWP FAST)";
    case '6': return "ISO 15765-4 (CAN 11/500)";
    case '7': return "ISO 15765-4 (CAN 29/500)";
    case '8': return "ISO 15765-4 (CAN 11/250)";
    case '9': return "ISO 15765-4 (CAN 29/250)";
    default: return "AUTO";
    }
}

std::optional<int> hexValue(const std::string& text)
{
    if (text.empty() || text.size() > 8 || !std::all_of(text.begin(), text.end(), [](char c) { return std::isxdigit(static_cast<unsigned char>(c)); }))
        return std::nullopt;
    return static_cast<int>(std::stoul(text, nullptr, 16));
}

// The serial line: ten bits a byte at the adapter's rate.
constexpr link::Micros kSerialByte = 10 * 1'000'000 / Elm327Adapter::kBaud;

// The tester's end of the adapter's serial line.
class AdapterWire final : public link::Wire {
public:
    explicit AdapterWire(Elm327Adapter& adapter) : adapter_(adapter) {}

    std::string name() const override { return "the virtual vehicle's ELM327"; }

    void open() override { open_ = true; }
    void close() override
    {
        open_ = false;
        pending_.clear();
    }
    bool isOpen() const override { return open_; }
    void setBaud(int baud) override
    {
        requireOpen();
        adapter_.setBaud(baud);
    }
    // The adapter's serial line has no use for a break.
    void setBreak(bool) override { requireOpen(); }
    void write(std::span<const std::uint8_t> bytes) override
    {
        requireOpen();
        adapter_.testerWrite(link::Bytes(bytes.begin(), bytes.end()));
    }
    std::size_t read(std::span<std::uint8_t> buf, link::Micros deadline) override
    {
        requireOpen();
        link::Clock& clock = adapter_.clock();
        for (;;) {
            const link::Bytes got = adapter_.takeReceived();
            pending_.insert(pending_.end(), got.begin(), got.end());
            if (!pending_.empty() || buf.empty()) {
                const std::size_t n = std::min(buf.size(), pending_.size());
                std::copy_n(pending_.begin(), n, buf.begin());
                pending_.erase(pending_.begin(), pending_.begin() + static_cast<long>(n));
                return n;
            }
            if (clock.now() >= deadline)
                return 0;
            const auto next = adapter_.nextEvent();
            clock.sleepUntil(next && *next < deadline ? *next : deadline);
        }
    }
    void flushInput() override
    {
        requireOpen();
        adapter_.takeReceived();
        pending_.clear();
    }

private:
    void requireOpen() const
    {
        if (!open_)
            throw link::LinkError(link::LinkError::Kind::PortOpen, "The virtual adapter's port is not open.");
    }

    Elm327Adapter& adapter_;
    link::Bytes pending_;
    bool open_ = false;
};

} // namespace

Elm327Adapter::Elm327Adapter(link::Clock& clock, VehicleConfig config, ElmTiming timing)
    : clock_(clock), config_(std::move(config)), timing_(timing)
{
    if (config_.units.empty())
        config_.units = configFor(builtInVehicle(), config_.seed).units;
    for (auto& make : config_.units)
        units_.push_back(make(clock_, config_.seed));
    std::stable_sort(units_.begin(), units_.end(), [](const auto& a, const auto& b) { return a->replyRank() < b->replyRank(); });
}

Elm327Adapter::~Elm327Adapter() = default;

std::unique_ptr<link::Wire> Elm327Adapter::makeWire() { return std::make_unique<AdapterWire>(*this); }

void Elm327Adapter::testerWrite(const link::Bytes& bytes)
{
    if (lineBaud_ != kBaud)
        return;
    link::Micros at = clock_.now();
    for (std::uint8_t b : bytes) {
        if (!inputStart_)
            inputStart_ = at;
        at += kSerialByte;
        if (b == '\r') {
            command(input_, at);
            input_.clear();
            inputStart_.reset();
        } else if (b != '\n' && b != ' ') {
            input_ += static_cast<char>(std::toupper(b));
        }
    }
}

link::Bytes Elm327Adapter::takeReceived()
{
    const link::Micros now = clock_.now();
    link::Bytes got;
    while (!out_.empty() && out_.front().first <= now) {
        got.push_back(out_.front().second);
        out_.pop_front();
    }
    return got;
}

std::optional<link::Micros> Elm327Adapter::nextEvent() const
{
    if (out_.empty())
        return std::nullopt;
    return out_.front().first;
}

void Elm327Adapter::sendText(const std::string& text, link::Micros at)
{
    link::Micros t = std::max(at, serialFree_);
    for (char c : text) {
        t += kSerialByte;
        out_.emplace_back(t, static_cast<std::uint8_t>(c));
    }
    serialFree_ = t;
}

void Elm327Adapter::command(const std::string& typed, link::Micros at)
{
    const link::Micros start = std::max(at, freeAt_);
    // Bytes typed before the last prompt went out overlap the last command's time.
    const link::Micros engaged = std::max(inputStart_.value_or(at), freeAt_);
    const std::string eol = linefeeds_ ? "\r\n" : "\r";
    if (echo_)
        sendText(typed + eol, start);
    // An empty line repeats the last command, as the adapter does.
    const std::string text = typed.empty() ? lastCommand_ : typed;
    Answer answer;
    if (text.empty())
        answer.done = start;
    else if (text.rfind("AT", 0) == 0)
        answer = atCommand(text.substr(2), start);
    else
        answer = request(text, start);
    lastCommand_ = text;
    // Settings changed by the command (ATL, ATZ) shape its own answer already.
    const std::string end = linefeeds_ ? "\r\n" : "\r";
    for (const Line& l : answer.lines)
        sendText(l.text + end, l.at);
    sendText(end + kPrompt, answer.done);
    freeAt_ = serialFree_;
    load_.commands += 1;
    load_.busy += serialFree_ - engaged;
}

void Elm327Adapter::reset()
{
    echo_ = linefeeds_ = spaces_ = true;
    headers_ = false;
    adaptive_ = 1;
    timeoutUnits_ = 0x32;
    wakeUpUnits_ = 0x92;
    protocol_ = '0';
    automatic_ = true;
    found_ = 0;
    header_.clear();
    initAddress_ = link::kline::kObdAddress;
}

Elm327Adapter::Answer Elm327Adapter::atCommand(const std::string& cmd, link::Micros at)
{
    const link::Micros t = at + timing_.command;
    const auto ok = [&] { return Answer{{{t, "OK"}}, t}; };
    const auto say = [&](std::string text) { return Answer{{{t, std::move(text)}}, t}; };
    const auto flag = [&](const char* name, bool& setting) -> std::optional<Answer> {
        const std::string n(name);
        if (cmd == n + "0" || cmd == n + "1") {
            setting = cmd.back() == '1';
            return ok();
        }
        return std::nullopt;
    };
    const auto argument = [&](const char* name) -> std::optional<int> {
        const std::string n(name);
        return cmd.rfind(n, 0) == 0 ? hexValue(cmd.substr(n.size())) : std::nullopt;
    };

    if (cmd == "Z" || cmd == "WS") {
        reset();
        return {{{at + timing_.reset, ""}, {at + timing_.reset, kVersion}}, at + timing_.reset};
    }
    if (cmd == "I")
        return say(kVersion);
    if (cmd == "@1")
        return say(kDescription);
    if (cmd == "RV")
        return say(kBatteryVoltage);
    if (cmd == "D") {
        reset();
        return ok();
    }
    for (auto [name, setting] : {std::pair{"E", &echo_}, std::pair{"L", &linefeeds_}, std::pair{"S", &spaces_}, std::pair{"H", &headers_}})
        if (auto a = flag(name, *setting))
            return *a;
    if (std::find(std::begin(kAccepted), std::end(kAccepted), cmd) != std::end(kAccepted))
        return ok();
    if (cmd == "AT0" || cmd == "AT1" || cmd == "AT2") {
        adaptive_ = cmd.back() - '0';
        return ok();
    }
    if (auto v = argument("ST"); v && cmd.size() == 4) {
        timeoutUnits_ = *v == 0 ? 0x32 : *v;
        return ok();
    }
    if (auto v = argument("SW"); v && cmd.size() == 4) {
        wakeUpUnits_ = *v;
        return ok();
    }
    if (auto v = argument("IIA"); v && cmd.size() == 5) {
        initAddress_ = static_cast<std::uint8_t>(*v);
        return ok();
    }
    if (cmd.rfind("SH", 0) == 0 && argument("SH") && (cmd.size() == 5 || cmd.size() == 8 || cmd.size() == 10)) {
        header_ = cmd.substr(2);
        return ok();
    }
    // SPn and TPn choose a protocol, SPAn and TPAn search starting there; 0 searches them all.
    if ((cmd.rfind("SP", 0) == 0 || cmd.rfind("TP", 0) == 0) && cmd.size() >= 3 && cmd.size() <= 4) {
        const bool search = cmd.size() == 4 && cmd[2] == 'A';
        const char p = cmd.back();
        if (p < '0' || p > '9' || (cmd.size() == 4 && !search))
            return say("?");
        protocol_ = p;
        automatic_ = search || p == '0';
        found_ = 0;
        return ok();
    }
    if (cmd == "PC") {
        found_ = 0;
        return ok();
    }
    if (cmd == "DPN")
        return say(automatic_ ? std::string("A") + (found_ ? found_ : protocol_) : std::string(1, protocol_));
    if (cmd == "DP")
        return say(automatic_ ? std::string("AUTO") + (found_ ? std::string(", ") + protocolName(found_) : "")
                              : protocolName(protocol_));
    if (cmd == "SI" || cmd == "FI") {
        const char p = automatic_ ? 0 : protocol_;
        if ((cmd == "SI" && p != '3' && p != '4') || (cmd == "FI" && p != '5'))
            return say("?");
        bool up = false;
        const link::Micros done = busInit(p, at, up);
        found_ = up ? p : 0;
        return {{{done, up ? "BUS INIT: ...OK" : "BUS INIT: ...ERROR"}}, done};
    }
    return say("?");
}

} // namespace kvx::sim
