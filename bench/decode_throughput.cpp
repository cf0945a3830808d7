// Messages decoded per second: every decodable service 01 parameter with both unit systems, and a
// mix of the other generic replies. Prints the median of several runs.
#include "link/Hex.h"
#include "link/decode/PidTable.h"
#include "link/decode/PidValue.h"
#include "link/decode/ServiceReply.h"
#include "link/decode/TestResults.h"
#include "link/decode/TroubleCodes.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace kvx::link;

std::string frame(const std::string& body)
{
    const std::string text = "486B10" + body;
    return text + toHex(checksum(*fromHex(text)));
}

std::vector<std::string> liveMessages()
{
    std::vector<std::string> out;
    for (const auto& row : decode::pidRows()) {
        std::string body = "41" + toHex(row.pid);
        for (int i = 0; i < row.bytes; ++i)
            body += toHex(static_cast<std::uint8_t>(0x5A + 0x31 * i + row.pid));
        out.push_back(frame(body));
    }
    return out;
}

std::vector<std::string> otherMessages()
{
    return {frame("43013303010420"), frame("47C10000000000"), frame("4501015A00FF"), frame("4505011900FF"),
            frame("4601850064003C"), frame("4602010064003C"), frame("44"), frame("7F0422")};
}

// Messages per second over `rounds` passes, median of `runs` runs.
double medianRate(const std::vector<std::string>& messages, const std::function<std::size_t(const std::string&)>& decodeOne,
                  int rounds, int runs)
{
    std::vector<double> rates;
    std::size_t sink = 0;
    for (int r = 0; r < runs; ++r) {
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < rounds; ++i)
            for (const auto& m : messages)
                sink += decodeOne(m);
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        rates.push_back(static_cast<double>(messages.size()) * rounds / took.count());
    }
    std::sort(rates.begin(), rates.end());
    if (sink == 0)
        std::puts("(nothing decoded)");
    return rates[rates.size() / 2];
}

} // namespace

int main()
{
    constexpr int kRuns = 7;
    const auto live = liveMessages();
    const double liveRate = medianRate(
        live,
        [](const std::string& m) {
            return decode::formatLiveValue(m, decode::Metric).size() + decode::formatLiveValue(m, decode::Customary).size();
        },
        2000, kRuns);
    // Each message goes through all four decoders; three of them turn it away at the service byte.
    const auto other = otherMessages();
    const double otherRate = medianRate(
        other,
        [](const std::string& m) {
            return decode::formatTroubleCodes(m, 1).size() + decode::formatOxygenTest(m, decode::TestValue).size() +
                   decode::formatMonitorTest(m).result.size() + decode::formatServiceReply(m).size();
        },
        20000, kRuns);
    std::printf("live values (%zu PIDs, both texts): %.0f messages/s (median of %d runs)\n", live.size(), liveRate, kRuns);
    std::printf("codes, tests, service replies:      %.0f messages/s (median of %d runs)\n", otherRate, kRuns);
    return 0;
}
