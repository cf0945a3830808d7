#include "settings/SettingsStore.h"

#include "link/LinkSession.h"
#include "session/MainScreen.h"
#include "session/Session.h"

namespace kvx::settings {

void LoadCommSettings(Session& session)
{
    CommSettings& s = session.settings;
    ReadCommSettings(s);
    // The KWP2000 delay stays with the link's own value until the user applies the dialog.
    session.link.SetP3Delay(s.P3Delay);
    session.link.SetP4Delay(s.P4Delay);
    session.link.SetInterByteDelay(s.InterByteDelay);
    session.screen.tmrKeepAlive.setInterval(s.KeepAlive);
    session.screen.tmrKeepAliveEnhance.setInterval(s.KeepAlive);
    session.screen.sldSpeedP3.setValue(s.P3Delay);
    session.screen.lblSpeed.setText(std::to_string(session.screen.sldSpeedP3.value()));
}

void SetP3FromSlider(Session& session, int value)
{
    session.screen.sldSpeedP3.setValue(value);
    const int shown = session.screen.sldSpeedP3.value();
    session.link.SetP3Delay(shown);
    session.screen.lblSpeed.setText(std::to_string(shown));
    session.settings.P3Delay = shown;
}

} // namespace kvx::settings
