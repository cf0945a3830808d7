#include "session/MainScreen.h"

namespace kvx {

MainScreen::MainScreen() = default;

ControlState& MainScreen::control(const std::string& name)
{
    auto& slot = controls_[name];
    if (!slot)
        slot = std::make_unique<ControlState>();
    return *slot;
}

} // namespace kvx
