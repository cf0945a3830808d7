#pragma once

#include "session/Shell.h"

#include <functional>
#include <string>
#include <vector>

namespace kvx::test {

// A Shell for tests: keeps every message box and runs an optional hook when events are pumped.
class RecordingShell : public Shell {
public:
    struct Box {
        std::string title, text;
        MessageIcon icon;
    };
    std::vector<Box> boxes;
    int pumps = 0;
    std::function<void()> onProcessEvents;

    void messageBox(const std::string& title, const std::string& text, MessageIcon icon) override
    {
        boxes.push_back({title, text, icon});
    }
    void processEvents() override
    {
        ++pumps;
        if (onProcessEvents)
            onProcessEvents();
    }
};

} // namespace kvx::test
