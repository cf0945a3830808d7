#include "data/TabLayout.h"

#include "session/MainScreen.h"
#include "session/Session.h"

namespace kvx::data {

const std::array<TabEntry, kTabCount>& TabTable()
{
    static const std::array<TabEntry, kTabCount> table{{
        {"LIVE DATA", "Data Parameters", "Frame1"},
        {"FREEZE FRAME DATA", "Freeze Frame Data and DTC", "Frame2"},
        {"READ/CLEAR FAULTS", "Clear and Read Faults", "Frame3"},
        {"O2 SENSOR TEST", "Mode 5 - Montior O2 Sensor Status", "Frame4"},
        {"MONITORING TEST", "Mode 6", "Frame5"},
        {"INFO", "Non-Continuous Monitor Test", "Frame6"},
        {"LIVE DATA COMBO", "Data Parameters", "Frame7"},
    }};
    return table;
}

void BuildTabs(MainScreen& screen, const TabFlags& flags)
{
    const auto& table = TabTable();
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (!flags[i])
            continue;
        screen.TabStrip1.add({table[i].caption, table[i].toolTip, table[i].panel});
        screen.control(table[i].panel).setVisible(true);
    }
}

void ClearTabs(MainScreen& screen)
{
    screen.TabStrip1.clear();
    for (const auto& tab : TabTable())
        screen.control(tab.panel).setVisible(false);
}

TabFlags ModuleTabs(int moduleIndex)
{
    switch (moduleIndex) {
    case ModuleGeneric:
        return {true, true, true, true, true, true, true};
    case ModuleNissanEcu:
    case ModuleNissanTcu:
        return {true, false, false, false, false, false, false};
    case ModuleToyota:
        return {true, false, false, false, false, false, true};
    default:
        return {};
    }
}

} // namespace kvx::data
