#pragma once

#include "session/CommSettings.h"

#include <QString>

namespace kvx {
struct Session;
}

namespace kvx::settings {

// Where the settings live: the per-user store of the program's title, section "Settings".
inline constexpr const char* kStoreName = "Korvenatronix OBD-II";
inline constexpr const char* kSection = "Settings";
// The title of the boxes about settings refused.
inline constexpr const char* kSettingsBoxTitle = "Settings";

// Reads every key with its start-up default; a value that is not a number of its field's width
// (32-bit for the baud rate, 16-bit for the others) leaves its field as it was. Only "Try All"
// sets TryAllProtocols. Never fails.
void ReadCommSettings(CommSettings& settings);

// Start-up: reads the store into the session's settings, every field 0 and "Try All" off before
// (so a value that does not convert leaves 0), and pushes P3, P4 and the inter-byte delay into
// the link (not the KWP2000 delay), the keep-alive interval into both timers, and P3 into the
// slider and lblSpeed. A keep-alive period below the timers' shortest is raised to it, and a box
// says so.
void LoadCommSettings(Session& session);

// Writes every key in the order Apply saves them.
void SaveCommSettings(const CommSettings& settings);

// Tells the link which interface drives the port, and the adapter's rate.
void PushInterface(Session& session);

// Writes "P3Delay" alone (the main window closing).
void SaveP3Delay(const CommSettings& settings);

// Writes "VirtualVehicle" alone (a car picked in the dialog and applied).
void SaveVirtualVehicle(const CommSettings& settings);

// sldSpeedP3 moved: the value goes to the link, lblSpeed and P3Delay at once; nothing is saved.
void SetP3FromSlider(Session& session, int value);

} // namespace kvx::settings
