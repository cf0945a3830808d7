#include "obd/TroubleCodes.h"
#include "support/BusTiming.h"
#include "support/CoreVehicle.h"

#include <gtest/gtest.h>


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
    test::CoreVehicle bench;
    Session& s = bench.session;
    void SetUp() override
    {
        ASSERT_TRUE(bench.wake());
        s.DtcDescriptions[301] = "Cylinder 1 Misfire Detected";
        bench.screen.tmrKeepAlive.setEnabled(true);
    }
};

TEST_F(TroubleCodes, StoredCodesRepeatEarlierFramesAndPutTheLinkBack)
{
    bench.link.SetP3Delay(120);
    RequestStoredCodes(s);
    // Two frames of three codes: the second frame's block repeats the first's lines.
    const auto lines = Lines(bench.screen.txtMode347.text());
    ASSERT_EQ(lines.size(), 9u) << bench.screen.txtMode347.text();
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(lines[3 + i], lines[i]);
    EXPECT_EQ(lines[0], "P0301 - Cylinder 1 Misfire Detected");
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

} // namespace
} // namespace kvx::obd
