#include "data/GridLayouts.h"
#include "data/TabLayout.h"
#include "session/MainScreen.h"
#include "session/Session.h"

#include <gtest/gtest.h>

namespace kvx::data {
namespace {

TEST(GridLayouts, ALayoutDropsEveryDataRowAndTheLiveGridKeepsItsMarkerHeading)
{
    MainScreen screen;
    screen.gridMode6.addRow();
    screen.gridMode6.setText(1, 0, "01");
    LayoutMonitorTestGrid(screen);
    EXPECT_EQ(screen.gridMode6.rows(), 1);
    EXPECT_EQ(screen.gridMode6.text(0, 6), "PASS/FAIL");

    screen.GridMode1.setText(0, 0, "X");
    screen.GridMode1.addRow();
    LayoutLiveDataGrid(screen);
    const GridModel& grid = screen.GridMode1;
    EXPECT_EQ(grid.rows(), 1);
    EXPECT_EQ(grid.text(0, 0), "X");
    EXPECT_EQ(grid.text(0, 2), "DESCRIPTION");
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
    }
    EXPECT_EQ(tabs[3].toolTip, "Mode 5 - Montior O2 Sensor Status");
    EXPECT_EQ(tabs[4].toolTip, "Mode 6");
    EXPECT_EQ(tabs[5].toolTip, "Non-Continuous Monitor Test");
    EXPECT_EQ(ModuleTabs(4), TabFlags{});
}

} // namespace
} // namespace kvx::data
