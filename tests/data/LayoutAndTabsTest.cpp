#include "data/GridLayouts.h"
#include "data/TabLayout.h"
#include "session/MainScreen.h"
#include "session/Session.h"

#include <gtest/gtest.h>

namespace kvx::data {
namespace {

TEST(GridLayouts, HeadingRowsAndNoDataRows)
{
    MainScreen screen;
    screen.gridMode6.addRow();
    screen.gridMode6.setText(1, 0, "01");
    LayoutMonitorTestGrid(screen);
    EXPECT_EQ(screen.gridMode6.rows(), 1);
    EXPECT_EQ(screen.gridMode6.text(0, 6), "PASS/FAIL");
    EXPECT_EQ(screen.gridMode6.text(0, 1), "CID");

    LayoutO2SensorGrid(screen);
    EXPECT_EQ(screen.gridMode5.text(0, 1), "DESCRIPTION");
    EXPECT_EQ(screen.gridMode5.text(0, 4), "MAX");
}

TEST(GridLayouts, LiveDataKeepsMarkerHeadingAndHeadsBothValueColumnsUnit)
{
    MainScreen screen;
    screen.GridMode1.setText(0, 0, "X");
    screen.GridMode1.addRow();
    LayoutLiveDataGrid(screen);
    const GridModel& grid = screen.GridMode1;
    EXPECT_EQ(grid.rows(), 1);
    EXPECT_EQ(grid.text(0, 0), "X");
    EXPECT_EQ(grid.text(0, 1), "PID");
    EXPECT_EQ(grid.text(0, 2), "DESCRIPTION");
    EXPECT_EQ(grid.text(0, 3), "UNIT");
    EXPECT_EQ(grid.text(0, 4), "UNIT");
}

TEST(Tabs, TheGenericModuleHasAllSevenInOrderWithTheirTipsAndPanels)
{
    MainScreen screen;
    BuildTabs(screen, ModuleTabs(ModuleGeneric));
    const auto& tabs = screen.TabStrip1.tabs();
    ASSERT_EQ(tabs.size(), 7u);
    const char* captions[] = {"LIVE DATA", "FREEZE FRAME DATA", "READ/CLEAR FAULTS", "O2 SENSOR TEST",
                              "MONITORING TEST", "INFO", "LIVE DATA COMBO"};
    for (std::size_t i = 0; i < tabs.size(); ++i) {
        EXPECT_EQ(tabs[i].caption, captions[i]);
        EXPECT_EQ(tabs[i].panel, "Frame" + std::to_string(i + 1));
        EXPECT_TRUE(screen.control(tabs[i].panel).visible());
    }
    EXPECT_EQ(tabs[3].toolTip, "Mode 5 - Montior O2 Sensor Status");
    EXPECT_EQ(tabs[4].toolTip, "Mode 6");
    EXPECT_EQ(tabs[5].toolTip, "Non-Continuous Monitor Test");
    EXPECT_EQ(screen.TabStrip1.selectedCaption(), "LIVE DATA");
}

TEST(Tabs, ModulesRebuildOnlyTheirTabsAndClearingHidesEveryPanel)
{
    MainScreen screen;
    BuildTabs(screen, ModuleTabs(ModuleGeneric));
    ClearTabs(screen);
    EXPECT_TRUE(screen.TabStrip1.tabs().empty());
    for (int i = 1; i <= 7; ++i)
        EXPECT_FALSE(screen.control("Frame" + std::to_string(i)).visible());

    BuildTabs(screen, ModuleTabs(ModuleToyota));
    ASSERT_EQ(screen.TabStrip1.tabs().size(), 2u);
    EXPECT_EQ(screen.TabStrip1.tabs()[1].caption, "LIVE DATA COMBO");
    EXPECT_FALSE(screen.control("Frame2").visible());

    ClearTabs(screen);
    BuildTabs(screen, ModuleTabs(ModuleNissanTcu));
    ASSERT_EQ(screen.TabStrip1.tabs().size(), 1u);
    EXPECT_EQ(screen.TabStrip1.tabs()[0].caption, "LIVE DATA");
    EXPECT_EQ(ModuleTabs(4), TabFlags{});
}

} // namespace
} // namespace kvx::data
