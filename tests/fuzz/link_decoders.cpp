// Feeds arbitrary bytes to every reply decoder: LinkSession's Format* operations and DecodeReply,
// the mode 06, Nissan and Toyota decoders, and the reply reader under them. Each input is tried
// as it is (any text a log or a hand-edited capture may hold), as hex pairs, and as hex messages
// joined by ":". The first byte picks the selectors, out-of-range values included. Every call
// must return a text; none may crash or read outside its input.
#include "link/Clock.h"
#include "link/Hex.h"
#include "link/LinkSession.h"
#include "link/ReplyText.h"
#include "link/decode/ModeSixDecoder.h"
#include "link/decode/NissanDecoder.h"
#include "link/decode/ToyotaDecoder.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using namespace kvx::link;

// The hex text of the bytes with ":" after every `every` bytes.
std::string joinedMessages(const Bytes& bytes, std::size_t every)
{
    std::string out;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i > 0 && i % every == 0)
            out += ':';
        out += toHex(bytes[i]);
    }
    return out;
}

void decodeAll(const std::string& text, std::uint8_t pick)
{
    static VirtualClock clock;
    static LinkSession link({}, clock);
    static const ModeSixDecoder modeSix;
    static const NissanDecoder nissan;
    static const ToyotaDecoder toyota;
    static const std::array<const char*, 4> makes = {"Acura", "Toyota", "", "nissan"};

    // Selectors a little beyond their ranges on both sides.
    const int selector = pick % 5 - 1;
    const int small = (pick >> 3) % 12 - 2;
    for (int s : {selector, 1, 2, 3}) {
        link.FormatLiveValue(text, s);
        link.FormatFreezeFrameValue(text, s);
        link.FormatOxygenTest(text, s);
    }
    link.FormatTroubleCode(text, small);
    link.FormatMonitorTest(text);
    link.FormatServiceReply(text);
    link.FormatInfoValue(text);
    link.FormatVin(text);
    link.DecodeReply(text);
    link.DescribePid(text.substr(0, 2), text.size() > 2 ? text.substr(2, 2) : std::string("1D"));

    const MonitorTestTexts t = link.FormatMonitorTest(text);
    modeSix.Describe(makes[pick % makes.size()], text.substr(0, 4), t.tid.empty() ? text.substr(0, 2) : t.tid,
                     t.component.empty() ? text.substr(0, 2) : t.component, t.typeCode ? t.typeCode : small, selector,
                     "-", text.substr(0, 3));

    for (std::size_t n : {4u, 6u})
        nissan.SensorName(text.substr(0, n), selector);
    nissan.SensorValue(text, selector, small, pick & 3);
    nissan.SensorValue(text, 1, small, 1);
    toyota.SensorName(text.substr(0, 2), small, selector);
    toyota.SensorValue(small, selector, text, pick & 3);
    toyota.SensorValue(1, 0, text, 1);

    readMessage(text);
    splitReply(text);
    sourceText(text);
    serviceText(text);
    dataText(text, static_cast<std::size_t>(pick));
    checksumHolds(text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::uint8_t pick = data[0];
    const Bytes rest(data + 1, data + size);
    decodeAll(std::string(rest.begin(), rest.end()), pick);
    decodeAll(toHex(rest), pick);
    decodeAll(joinedMessages(rest, pick % 9 + 3), pick);
    return 0;
}
