#pragma once

#include "link/LinkSession.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "support/RecordingShell.h"
#include "support/TempSettings.h"

#include <memory>

namespace kvx::test {

// A session over a settings store of its own, on a link that never opens a port.
struct OfflineSession {
    TempSettings store;
    link::VirtualClock clock;
    link::LinkSession link{[](int, link::InterfaceType) -> std::unique_ptr<link::Wire> { return nullptr; }, clock};
    MainScreen screen;
    RecordingShell shell;
    Session session{link, screen, shell};
};

} // namespace kvx::test
