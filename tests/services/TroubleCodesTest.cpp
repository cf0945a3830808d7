#include "data/DtcDescriptions.h"
#include "obd/TroubleCodeLines.h"
#include "obd/TroubleCodes.h"
#include "support/BusTiming.h"
#include "support/VehicleSession.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kvx::obd {
namespace {

std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end = text.find("\r\n"); end != std::string::npos; end = text.find("\r\n", start)) {
        lines.push_back(text.substr(start, end - start));
        start = end + 2;
    }
    if (start < text.size())
        lines.push_back(text.substr(start));
    return lines;
}

struct TroubleCodes : ::testing::Test {
    test::VehicleSession bench;
    Session& s = bench.session;
    void SetUp() override
    {
        ASSERT_TRUE(bench.connect());
        s.DtcDescriptions[301] = "Cylinder 1 Misfire Detected";
        bench.screen.tmrKeepAlive.setEnabled(true);
    }
};

TEST_F(TroubleCodes, StoredCodesRepeatEarlierFramesAndPutTheLinkBack)
{
    bench.link.SetP3Delay(120);
    RequestStoredCodes(s);
    const auto lines = Lines(bench.screen.txtMode347.text());
    ASSERT_FALSE(lines.empty());
    ASSERT_NE(lines.front(), "No Response From ECU");
    // The box is a run of blocks, each the one before plus the next frame's codes.
    std::vector<std::size_t> blocks;
    std::size_t previous = 0;
    std::size_t at = 0;
    while (at < lines.size()) {
        const std::size_t size = blocks.empty() ? 0 : blocks.back();
        ASSERT_LE(at + size, lines.size());
        for (std::size_t i = 0; i < size; ++i)
            ASSERT_EQ(lines[at + i], lines[previous + i]) << "block starting at line " << at;
        std::size_t next = at + std::max<std::size_t>(size, 1);
        while (next < lines.size() && lines[next] != lines[0])
            ++next;
        ASSERT_GT(next - at, size) << "a frame added no code";
        blocks.push_back(next - at);
        previous = at;
        at = next;
    }
    EXPECT_GE(blocks.size(), 2u) << "the vehicle's stored codes should need several frames";
    for (const auto& line : lines)
        EXPECT_EQ(line.substr(5, 3), " - ") << line;
    // Codes may come in several frames, so the read waits 1500 ms before its request, whatever
    // P3 the settings give; the setting is back afterwards.
    const auto request = test::lastRequest(bench.vehicle.record(), bench.vehicle.byteTime());
    EXPECT_GE(request.quietBefore(), link::ms(1500));
    EXPECT_LE(request.quietBefore(), link::ms(1501));
    EXPECT_EQ(bench.link.GetP3Delay(), 120);
    EXPECT_TRUE(bench.screen.tmrKeepAlive.enabled());
    EXPECT_EQ(bench.screen.tmrKeepAlive.interval(), s.settings.KeepAlive);
    EXPECT_EQ(bench.screen.StatusBar1.text(1), "");
}

TEST_F(TroubleCodes, ClearAsksNothingAndReallyClears)
{
    RequestClearCodes(s);
    const std::string answer = bench.screen.txtMode347.text();
    EXPECT_TRUE(bench.shell.boxes.empty());
    ASSERT_GE(answer.size(), 3u);
    EXPECT_EQ(answer.substr(answer.size() - 2), "\r\n");
    EXPECT_NE(answer, "No Response From ECU");

    RequestStoredCodes(s);
    EXPECT_EQ(bench.screen.txtMode347.text(), "No Response From ECU");
}

TEST_F(TroubleCodes, ButtonsNeedTheGenericModuleAndALiveSession)
{
    bench.screen.txtMode347.setText("earlier");
    const std::string before = bench.lastExchange();
    s.ModuleIndex = ModuleToyota;
    RequestStoredCodes(s);
    RequestClearCodes(s);
    EXPECT_EQ(bench.screen.txtMode347.text(), "earlier");

    // A port still open but a session given up: the box is emptied, nothing is sent, and the
    // keep-alive timer comes back.
    s.ModuleIndex = ModuleGeneric;
    s.LinkDown = true;
    bench.screen.tmrKeepAlive.setEnabled(false);
    RequestPendingCodes(s);
    EXPECT_EQ(bench.screen.txtMode347.text(), "");
    EXPECT_EQ(bench.lastExchange(), before);
    EXPECT_TRUE(bench.screen.tmrKeepAlive.enabled());
}

TEST(TroubleCodeLookup, LetterPlaysNoPartAndAMissingCodeSaysSo)
{
    std::vector<std::string> table(4001);
    table[35] = "Turbo/Super Charger Boost Control Circuit";
    TroubleCodeListing listing([&](const std::string& code) { return data::DtcDescription(table, code); });
    EXPECT_EQ(listing.addFrame("C0035P0036"),
              "C0035 - Turbo/Super Charger Boost Control Circuit\r\nP0036 - No Desciption Available\r\n");
}

} // namespace
} // namespace kvx::obd
