#include "obd/KeepAlive.h"

#include "link/LinkSession.h"
#include "obd/CommandGuard.h"
#include "obd/Connection.h"
#include "obd/Disconnect.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

namespace kvx::obd {

namespace {

void tick(Session& session)
{
    MainScreen& screen = session.screen;
    if (session.SilenceCount >= kKeepAliveReconnectFrom && session.SilenceCount < kKeepAliveGiveUpAt) {
        screen.tmrKeepAlive.setEnabled(false);
        screen.StatusBar1.setText(1, kReconnecting);
        const bool answered = ReconnectEcu(session);
        screen.tmrKeepAlive.setEnabled(true);
        if (answered)
            screen.StatusBar1.setText(1, "");
        else
            ++session.SilenceCount;
    }

    if (session.SilenceCount >= kKeepAliveGiveUpAt || session.LinkDown) {
        Disconnect(session);
        session.shell.messageBox(kNoCommunication, kNoResponseFromEcu, MessageIcon::Exclamation);
        return;
    }

    if (!session.link.IsPortOpen())
        return;
    screen.StatusBar1.setLamp(3, Lamp::Green);
    session.LastFrame = session.link.EncodeRequest(session.HeaderByte1 + session.HeaderByte2 + "F10100");
    // The reply is judged raw: only whether anything came, and whether it was refused.
    session.LastRaw = session.link.Transact(session.LastFrame);
    screen.StatusBar1.setLamp(3, Lamp::Black);

    const int protocol = session.settings.ProtocolNumber;
    const bool kwp = protocol == link::Kwp2000Slow || protocol == link::Kwp2000Fast;
    // A refusal counts as silence on KWP2000 only.
    if (session.LastRaw.empty() || (kwp && IsNegativeResponse(session.LastRaw)))
        ++session.SilenceCount;
    else
        session.SilenceCount = 0;
}

} // namespace

void RestartKeepAlive(Session& session)
{
    session.screen.tmrKeepAlive.setInterval(session.settings.KeepAlive);
    session.screen.tmrKeepAlive.setEnabled(true);
}

void KeepAliveTick(Session& session)
{
    if (session.Busy)
        return;
    RunLinkCommand(session, [&] { tick(session); });
}

} // namespace kvx::obd
