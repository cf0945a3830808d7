// Feeds arbitrary bytes to the frame cutter and, through a scripted wire, to the reply collector
// and the whole request cycle of LinkSession: a unit wakes up as a script says (ISO 9141-2 slow
// init, a functional fast init, or the Nissan start frame, in either header form), then answers
// one request with the fuzzer's bytes at the fuzzer's pace. Whatever comes, every frame handed on
// must be a whole reply addressed to the tester with its checksum right; nothing may crash.
#include "link/Clock.h"
#include "link/Framing.h"
#include "link/Hex.h"
#include "link/LinkError.h"
#include "link/LinkSession.h"
#include "link/ReplyText.h"
#include "link/Wire.h"

#include <cstddef>
#include <cstdio>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace kvx::link;

constexpr Micros kByte = 962; // ten bits at 10400 baud

[[noreturn]] void broken(const char* what)
{
    std::fprintf(stderr, "%s\n", what);
    __builtin_trap();
}

// A unit's bytes, each after its own pause.
using Script = std::vector<std::pair<Micros, std::uint8_t>>;

// The tester's end of a K-line on which a script plays the unit: it echoes every byte, answers
// the 5-baud address when the tester waits after it, and plays a script once the tester has
// written a given number of bytes.
class ScriptedWire final : public Wire {
public:
    explicit ScriptedWire(VirtualClock& clock) : clock_(clock) {}

    void answerAfter(std::size_t written, Script script) { scripts_.emplace(written, std::move(script)); }
    void answerAddress(Script script) { addressAnswer_ = std::move(script); }
    std::size_t written() const { return written_; }

    void open() override { open_ = true; }
    void close() override { open_ = false; }
    bool isOpen() const override { return open_; }
    void setBaud(int) override {}
    void setBreak(bool on) override { woken_ = woken_ || on; }

    void write(std::span<const std::uint8_t> bytes) override
    {
        for (std::uint8_t b : bytes) {
            const Micros end = clock_.now() + kByte;
            incoming_.emplace(end, b);
            ++written_;
            if (const auto s = scripts_.find(written_); s != scripts_.end())
                play(end, s->second);
        }
    }

    std::size_t read(std::span<std::uint8_t> buf, Micros deadline) override
    {
        if (woken_ && !addressAnswer_.empty() && written_ == 0 && deadline > clock_.now()) {
            play(clock_.now(), addressAnswer_);
            addressAnswer_.clear();
        }
        if (incoming_.empty() || incoming_.begin()->first > deadline) {
            clock_.sleepUntil(deadline);
            return 0;
        }
        clock_.sleepUntil(incoming_.begin()->first);
        std::size_t n = 0;
        while (n < buf.size() && !incoming_.empty() && incoming_.begin()->first <= clock_.now()) {
            buf[n++] = incoming_.begin()->second;
            incoming_.erase(incoming_.begin());
        }
        return n;
    }

    void flushInput() override
    {
        while (!incoming_.empty() && incoming_.begin()->first <= clock_.now())
            incoming_.erase(incoming_.begin());
    }

private:
    void play(Micros from, const Script& script)
    {
        for (const auto& [gap, byte] : script)
            incoming_.emplace(from += gap + kByte, byte);
    }

    VirtualClock& clock_;
    std::multimap<Micros, std::uint8_t> incoming_;
    std::multimap<std::size_t, Script> scripts_;
    Script addressAnswer_;
    std::size_t written_ = 0;
    bool open_ = false;
    bool woken_ = false;
};

Script frame(Bytes bytes)
{
    bytes.push_back(checksum(bytes));
    Script s;
    for (std::uint8_t b : bytes)
        s.push_back({ms(2), b});
    return s;
}

// The fuzzer's bytes as a unit's: a value and a pause of 0 to 63 ms (past P2max ends the reply).
Script fromInput(const std::uint8_t* data, std::size_t size)
{
    Script s;
    for (std::size_t i = 0; i + 1 < size; i += 2)
        s.push_back({ms(data[i + 1] & 0x3F), data[i]});
    return s;
}

std::vector<TimedByte> timed(const Script& script)
{
    std::vector<TimedByte> out;
    Micros t = 0;
    for (const auto& [gap, byte] : script)
        out.push_back({byte, t += gap + kByte});
    return out;
}

bool checksumOk(const Bytes& f) { return f.size() >= 2 && checksum(Bytes(f.begin(), f.end() - 1)) == f.back(); }

// Every frame the cutter keeps is a whole reply for the tester; every byte is kept or dropped.
void checkCut(LineKind kind, const std::vector<TimedByte>& in, const ReplyAddressing& to)
{
    const FrameCut cut = cutFrames(kind, in, to);
    std::size_t accounted = 0;
    for (const Bytes& f : cut.frames) {
        accounted += f.size();
        if (!checksumOk(f) || f.size() < 3)
            broken("a frame with a wrong checksum");
        if (kind == LineKind::Iso9141 && (f[0] != 0x48 || f[1] != 0x6B || f.size() > 11 || f.size() < 5))
            broken("not an ISO 9141 reply");
        if (kind == LineKind::Kwp && (f[0] & 0xC0) && (f.size() < 5 || f[1] != to.tester || f[2] >= 0xF0))
            broken("not addressed to the tester");
        if (kind == LineKind::Kwp && !(f[0] & 0xC0) && !to.shortHeaders)
            broken("a short header where none is used");
    }
    for (const DroppedBytes& d : cut.dropped)
        accounted += d.bytes.size();
    if (accounted != in.size())
        broken("bytes lost by the cut");
}

// Wakes a scripted unit over line 0-2 and sends it one request it answers with `reply`.
void exchange(std::uint8_t choice, const Script& reply)
{
    VirtualClock clock(ms(1000));
    const int line = choice % 3;
    const std::uint8_t kb1 = (choice & 4) ? 0xEA : (line == 2 ? 0xE5 : 0xEF);
    const std::string start = line == 2 ? "8110FC810E" : "";
    ScriptedWire* wire = nullptr;
    LinkSession link(
        [&](int, InterfaceType) {
            auto w = std::make_unique<ScriptedWire>(clock);
            if (line == 0) {
                w->answerAddress({{ms(20), 0x55}, {ms(5), 0x08}, {ms(5), 0x08}});
                w->answerAfter(1, {{ms(30), 0xCC}});
            } else {
                w->answerAfter(5, frame({0x83, static_cast<std::uint8_t>(line == 2 ? 0xFC : 0xF1), 0x10, 0xC1, kb1, 0x8F}));
            }
            wire = w.get();
            return w;
        },
        clock);
    link.SetP3Delay(60);
    link.SetP4Delay(5);
    std::string result;
    try {
        if (!link.InitializeEcu(line == 2 ? "" : "33", 10400, 1, line == 0 ? 1 : 3, start, false, result))
            broken("the scripted unit did not wake up");
        const std::string request = line == 0 ? "686AF10100" : line == 1 ? "C033F10100" : "052211000401";
        const std::string encoded = link.EncodeRequest(request);
        wire->answerAfter(wire->written() + encoded.size() / 2, reply);
        const std::string raw = link.Transact(encoded);
        const bool bodies = line == 2;
        for (const std::string& m : splitReply(raw)) {
            const Bytes f = *fromHex(m);
            if (!checksumOk(f) || (bodies && f[0] + 2u != f.size()) || (!bodies && !readMessage(m)))
                broken("a raw reply that is no whole frame");
        }
        for (const std::string& m : splitReply(link.DecodeReply(raw)))
            if (bodies && (*fromHex(m))[0] + 1u != m.size() / 2)
                broken("an extracted reply that is not its length byte and payload");
    } catch (const LinkError&) {
        // A refused request is an answer too; the script never fails the echo.
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const Script reply = fromInput(data + 1, size - 1);
    const std::vector<TimedByte> bytes = timed(reply);
    checkCut(LineKind::Iso9141, bytes, {});
    checkCut(LineKind::Kwp, bytes, {});
    checkCut(LineKind::Kwp, bytes, {0xFC, true});
    exchange(data[0], reply);
    return 0;
}
