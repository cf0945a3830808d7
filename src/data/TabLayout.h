#pragma once

#include <array>
#include <string>

namespace kvx {
class MainScreen;
}

namespace kvx::data {

inline constexpr int kTabCount = 7;

struct TabEntry {
    const char* caption;
    const char* toolTip;
    const char* panel;
};

// The seven tabs of TabStrip1 in the order they are added.
const std::array<TabEntry, kTabCount>& TabTable();

using TabFlags = std::array<bool, kTabCount>;

// Adds a tab (caption, tool tip) for each flag that is set, in the table's order, and shows its
// panel; panels of unset flags are left as they are.
void BuildTabs(MainScreen& screen, const TabFlags& flags);

// Removes every tab and hides the seven panels (a module is being chosen).
void ClearTabs(MainScreen& screen);

// The tabs each module shows: all seven for the generic module, "LIVE DATA" for the Nissan
// units, "LIVE DATA" and "LIVE DATA COMBO" for the Toyota unit; none for another index.
TabFlags ModuleTabs(int moduleIndex);

} // namespace kvx::data
