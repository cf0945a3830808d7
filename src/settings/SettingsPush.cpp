#include "settings/SettingsStore.h"

#include "link/LinkSession.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

namespace kvx::settings {

namespace {

// What every field holds before the store is read at start-up.
void clearForLoad(CommSettings& s)
{
    s.BaudRate = s.PortNumber = s.KeepAlive = s.P3Delay = s.P4Delay = s.InterByteDelay = s.ProtocolNumber = 0;
    s.TryAllProtocols = false;
    s.Kwp2000InitDelay.clear();
    s.VirtualVehicle.clear();
}

} // namespace

void LoadCommSettings(Session& session)
{
    CommSettings& s = session.settings;
    clearForLoad(s);
    ReadCommSettings(s);
    if (s.KeepAlive < kMinKeepAliveMs) {
        session.shell.messageBox(kSettingsBoxTitle,
                                 "The stored Keep Alive (mS) of " + std::to_string(s.KeepAlive) +
                                     " is refused: the keep-alive runs every " + std::to_string(kMinKeepAliveMs) +
                                     " mS instead.",
                                 MessageIcon::Exclamation);
        s.KeepAlive = kMinKeepAliveMs;
    }
    PushInterface(session);
    // The KWP2000 delay stays with the link's own value until the user applies the dialog.
    session.link.SetP3Delay(s.P3Delay);
    session.link.SetP4Delay(s.P4Delay);
    session.link.SetInterByteDelay(s.InterByteDelay);
    session.screen.tmrKeepAlive.setInterval(s.KeepAlive);
    session.screen.tmrKeepAliveEnhance.setInterval(s.KeepAlive);
    session.screen.sldSpeedP3.setValue(s.P3Delay);
    session.screen.lblSpeed.setText(std::to_string(session.screen.sldSpeedP3.value()));
}

void PushInterface(Session& session)
{
    const CommSettings& s = session.settings;
    session.link.SetInterface(s.Interface == kElm327Interface ? link::InterfaceType::Elm327 : link::InterfaceType::KLineCable,
                              s.AdapterBaud);
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
