#include "link/decode/TestResults.h"

#include "link/ProtocolBytes.h"
#include "link/ReplyText.h"
#include "link/decode/NumberText.h"
#include "link/decode/PidWords.h"

#include <array>

namespace kvx::link::decode {

namespace {

constexpr std::uint8_t kOxygenReply = kline::positiveReply(kline::kOxygenTests);
constexpr std::uint8_t kMonitorReply = kline::positiveReply(kline::kMonitorTests);
constexpr std::uint8_t kMinimumBit = 0x80;

struct OxygenTest {
    const char* name;
    double scale;
    int decimals;
    const char* unit;
};

// TIDs 01-0A: voltages count 5 mV, switch times 4 ms, transition times and periods 40 ms.
constexpr std::array<OxygenTest, 10> kOxygenTests = {{
    {"Rich to lean sensor threshold voltage", 0.005, 3, "V"},
    {"Lean to rich sensor threshold voltage", 0.005, 3, "V"},
    {"Low sensor voltage for switch time", 0.005, 3, "V"},
    {"High sensor voltage for switch time", 0.005, 3, "V"},
    {"Rich to lean sensor switch time", 0.004, 3, "s"},
    {"Lean to rich sensor switch time", 0.004, 3, "s"},
    {"Minimum sensor voltage for test cycle", 0.005, 3, "V"},
    {"Maximum sensor voltage for test cycle", 0.005, 3, "V"},
    {"Time between sensor transitions", 0.04, 2, "s"},
    {"Sensor period", 0.04, 2, "s"},
}};

const OxygenTest* oxygenTest(int tid)
{
    return tid >= 1 && tid <= 10 ? &kOxygenTests[static_cast<std::size_t>(tid - 1)] : nullptr;
}

bool isRangeMarker(int tid)
{
    return tid % 0x20 == 0;
}

} // namespace

std::string oxygenTestName(int tid)
{
    const OxygenTest* test = oxygenTest(tid);
    if (test)
        return test->name;
    return isRangeMarker(tid) ? "Supported tests" : "";
}

std::string formatOxygenTest(std::string_view message, int selector)
{
    const auto m = readMessage(message);
    if (!m || m->service != kOxygenReply || m->data.empty() || selector < TestValue || selector > TestMaximum)
        return {};
    const int tid = m->data[0];
    // Range markers answer with a four-byte bitmap of the next 32 TIDs after the sensor number.
    if (isRangeMarker(tid)) {
        if (selector != TestValue || m->data.size() < 6)
            return {};
        return supportedList(m->data.data() + 2, tid);
    }
    const std::size_t at = 1 + static_cast<std::size_t>(selector);
    if (m->data.size() <= at)
        return {};
    const std::uint8_t raw = m->data[at];
    const OxygenTest* test = oxygenTest(tid);
    // Manufacturer TIDs carry no public scaling; the raw count is the honest answer.
    if (!test)
        return std::to_string(raw);
    return withUnit(raw * test->scale, test->decimals, test->unit);
}

MonitorTestTexts formatMonitorTest(std::string_view message)
{
    const auto m = readMessage(message);
    if (!m || m->service != kMonitorReply || m->data.size() < 6)
        return {};
    const auto& d = m->data;
    MonitorTestTexts t;
    t.tid = toHex(d[0]);
    const bool minimum = d[1] & kMinimumBit;
    t.component = toHex(static_cast<std::uint8_t>(d[1] & ~kMinimumBit));
    t.limitType = minimum ? "Minimum" : "Maximum";
    t.typeCode = minimum ? 4 : 3;
    // The older form leaves the units of value and limit to the manufacturer: both are shown as
    // the unsigned counts the unit sent, which is also what the comparison uses.
    const int value = d[2] * 256 + d[3];
    const int limit = d[4] * 256 + d[5];
    t.result = std::to_string(value);
    t.limit = std::to_string(limit);
    t.passFail = (minimum ? value >= limit : value <= limit) ? "PASS" : "FAIL";
    return t;
}

} // namespace kvx::link::decode
