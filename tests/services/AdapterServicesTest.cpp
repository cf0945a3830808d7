#include "obd/Connection.h"
#include "obd/MonitorTests.h"
#include "obd/TroubleCodes.h"
#include "support/RecordingShell.h"
#include "support/ScriptedAdapter.h"
#include "support/TempSettings.h"

#include "data/GridLayouts.h"
#include "link/Hex.h"
#include "link/LinkSession.h"
#include "session/MainScreen.h"
#include "session/Session.h"

#include <gtest/gtest.h>

namespace kvx::obd {
namespace {

// A generic session connected through an ELM327 to a CAN car, as the settings and Connect make it.
struct CanCarSession : ::testing::Test {
    test::TempSettings store;
    link::VirtualClock clock{1'000'000};
    test::ScriptedAdapter adapter{clock};
    link::LinkSession link{[this](int, link::InterfaceType) { return adapter.plug(); }, clock};
    MainScreen screen;
    test::RecordingShell shell;
    Session s{link, screen, shell};

    void SetUp() override
    {
        store.put("Interface", "1");
        store.put("TypeProtocol", "5");
        settings::LoadCommSettings(s);
        data::LayoutMonitorTestGrid(screen);
        adapter.answers["0100"] = "7E8064100BE3FA812";
        ASSERT_TRUE(ConnectEcu(s)) << screen.StatusBar1.text(1);
        ASSERT_EQ(s.EcuAddress, "10");
    }
};

std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    for (std::size_t from = 0, to = 0; from < text.size(); from = to + 2) {
        to = text.find("\r\n", from);
        if (to == std::string::npos)
            to = text.size();
        lines.push_back(text.substr(from, to - from));
    }
    return lines;
}

TEST_F(CanCarSession, TwelveCodesAreListedFrameByFrameAsOnTheKLine)
{
    std::vector<std::uint8_t> answer{0x43, 12};
    std::vector<std::string> codes;
    for (int i = 1; i <= 12; ++i) {
        const auto low = static_cast<std::uint8_t>((i / 10) << 4 | i % 10);  // P0101 to P0112
        answer.insert(answer.end(), {0x01, low});
        codes.push_back("P01" + link::toHex(low));
    }
    adapter.answers["03"] = test::isoTpLines("7E8", answer);
    RequestStoredCodes(s);
    const auto lines = Lines(screen.txtMode347.text());
    // Four messages of three codes: each adds its codes to the list so far, as K-line frames do.
    ASSERT_EQ(lines.size(), 3u + 6u + 9u + 12u) << screen.txtMode347.text();
    for (std::size_t i = 0; i < 12; ++i)
        EXPECT_EQ(lines[18 + i].substr(0, 5), codes[i]);
    EXPECT_EQ(lines[0].substr(0, 5), "P0101");
    EXPECT_EQ(lines[3].substr(0, 5), "P0101");
}

TEST_F(CanCarSession, MonitorResultsShowARowPerLimitWithTheirUnits)
{
    adapter.answers["0600"] = "7E80646008000000055";
    // Monitor 01 (oxygen sensor bank 1 sensor 1): TID 01 in volts, TID 05 in milliseconds.
    adapter.answers["0601"] = test::isoTpLines(
        "7E8", {0x46, 0x01, 0x01, 0x0B, 0x01, 0xC2, 0x01, 0x90, 0x03, 0x84, 0x01, 0x05, 0x10, 0x00, 0x64, 0x00, 0x00,
                0x00, 0x50});
    RequestMonitorTests(s);
    const auto& grid = screen.gridMode6;
    ASSERT_EQ(grid.rows(), 5);
    const auto row = [&](int r) {
        std::vector<std::string> cells;
        for (int c = 0; c < 7; ++c)
            cells.push_back(grid.text(r, c));
        return cells;
    };
    const std::string sensor = "O2 Sensor Monitor Bank 1 - Sensor 1 - ";
    using Row = std::vector<std::string>;
    EXPECT_EQ(row(1), (Row{"01", "01", sensor + "Rich to lean sensor threshold voltage", "0.400 V", "Minimum", "0.450 V", "PASS"}));
    EXPECT_EQ(row(2), (Row{"01", "01", sensor + "Rich to lean sensor threshold voltage", "0.900 V", "Maximum", "0.450 V", "PASS"}));
    EXPECT_EQ(row(3), (Row{"01", "05", sensor + "Rich to lean sensor switch time", "0 ms", "Minimum", "100 ms", "PASS"}));
    EXPECT_EQ(row(4), (Row{"01", "05", sensor + "Rich to lean sensor switch time", "80 ms", "Maximum", "100 ms", "FAIL"}));
}

} // namespace
} // namespace kvx::obd
