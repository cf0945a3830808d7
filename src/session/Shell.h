#pragma once

#include <string>

namespace kvx {

enum class MessageIcon { Information, Exclamation, Critical };

// What only a front end can do. The window implements it with message boxes and its event
// loop; kvx prints; tests record. The selected tab is in MainScreen::TabStrip1.
class Shell {
public:
    virtual ~Shell() = default;
    virtual void messageBox(const std::string& title, const std::string& text, MessageIcon icon) = 0;
    // Lets pending user-interface events run (the stop buttons, tab changes, timers).
    virtual void processEvents() = 0;
};

} // namespace kvx
