#pragma once

#include "settings/CommSettings.h"

#include <QString>

namespace kvx {
struct Session;
}

namespace kvx::settings {

// Where the settings live: the per-user store of the program's title, section "Settings".
inline constexpr const char* kStoreName = "Korvenatronix OBD-II";
inline constexpr const char* kSection = "Settings";

// Reads every key with its start-up default; a value that is not a number leaves its field as it
// was. Never fails.
void ReadCommSettings(CommSettings& settings);

// Start-up: reads the store into the session's settings and pushes P3, P4 and the inter-byte
// delay into the link (not the KWP2000 delay), the keep-alive interval into both timers, and P3
// into the slider and lblSpeed.
void LoadCommSettings(Session& session);

// Writes every key in the order Apply saves them.
void SaveCommSettings(const CommSettings& settings);

// Writes "P3Delay" alone (the main window closing).
void SaveP3Delay(const CommSettings& settings);

// sldSpeedP3 moved: the value goes to the link, lblSpeed and P3Delay at once; nothing is saved.
void SetP3FromSlider(Session& session, int value);

} // namespace kvx::settings
