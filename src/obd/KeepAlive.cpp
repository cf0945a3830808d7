#include "obd/KeepAlive.h"

#include "link/LinkSession.h"
#include "link/ReplyText.h"
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
    WakeUpAfterSilence(session, session.screen.tmrKeepAlive, [&] { return ReconnectAfterSilence(session); });

    if (session.SilenceCount >= kKeepAliveGiveUpAt || session.LinkDown) {
        DropSilentSession(session);
        return;
    }

    if (!session.link.IsPortOpen())
        return;
    const std::string raw = LampedExchange(session, link::genericRequest(session.HeaderByte1, session.HeaderByte2, "01", "00"));

    // A refusal counts as silence on KWP2000 only.
    if (raw.empty() || (IsKwp(session.settings.ProtocolNumber) && IsNegativeResponse(raw)))
        ++session.SilenceCount;
    else
        session.SilenceCount = 0;
}

} // namespace

void WakeUpAfterSilence(Session& session, const std::function<bool()>& wakeUp)
{
    if (session.SilenceCount < kKeepAliveReconnectFrom || session.SilenceCount >= kKeepAliveGiveUpAt)
        return;
    if (wakeUp())
        session.screen.StatusBar1.setText(1, "");
    else
        ++session.SilenceCount;
}

void WakeUpAfterSilence(Session& session, TimerModel& timer, const std::function<bool()>& wakeUp)
{
    WakeUpAfterSilence(session, [&] {
        timer.setEnabled(false);
        const bool answered = wakeUp();
        timer.setEnabled(true);
        return answered;
    });
}

bool ReconnectAfterSilence(Session& session)
{
    session.screen.StatusBar1.setText(1, kReconnecting);
    return ReconnectEcu(session);
}

std::string LampedExchange(Session& session, const std::string& request)
{
    StatusBarModel& status = session.screen.StatusBar1;
    status.setLamp(3, Lamp::Green);
    session.LastFrame = session.link.EncodeRequest(request);
    session.LastRaw = session.link.Transact(session.LastFrame);
    status.setLamp(3, Lamp::Black);
    return session.LastRaw;
}

void DropSilentSession(Session& session)
{
    Disconnect(session);
    session.shell.messageBox(kNoCommunication, kNoResponseFromEcu, MessageIcon::Exclamation);
}

void ArmKeepAlive(Session& session, TimerModel& timer)
{
    timer.setInterval(session.settings.KeepAlive);
    timer.setEnabled(true);
}

void RestartKeepAlive(Session& session)
{
    ArmKeepAlive(session, session.screen.tmrKeepAlive);
}

void KeepAliveTick(Session& session)
{
    if (session.Busy)
        return;
    RunLinkCommand(session, [&] { tick(session); });
}

} // namespace kvx::obd
