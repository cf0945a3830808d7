#pragma once

#include <QString>

namespace kvx {
struct Session;
}
namespace kvx::settings {
class SettingsEditor;
}

namespace kvx::app {

class frmMain;
struct MainActions;

// Writes a picture of every window into the folder: the dialogs first, then each tab of the main
// window after its service ran on the connected unit (live data recorded to a log on the way),
// then the player with that log open; the program then quits, with 1 when a picture lacks the
// values it should show (stderr names it). Runs once the start-up load is done.
void TakeScreenshots(frmMain& window, Session& session, settings::SettingsEditor& editor, const MainActions& actions,
                     const QString& folder);

} // namespace kvx::app
