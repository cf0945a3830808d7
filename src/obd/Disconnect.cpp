#include "obd/Disconnect.h"

#include "link/LinkSession.h"
#include "log/Recorder.h"
#include "obd/Connection.h"
#include "obd/Readings.h"
#include "session/MainScreen.h"
#include "session/Session.h"

namespace kvx::obd {

void Disconnect(Session& session)
{
    MainScreen& screen = session.screen;
    ControlState& chkLog = screen.control("chkLog");
    chkLog.setChecked(false);
    log::StopLogging(session);
    chkLog.setEnabled(false);
    screen.control("cmdGo").setVisible(false);
    screen.control("cmbModule").setVisible(false);

    session.LinkDown = true;
    for (TimerModel* timer : {&screen.tmrKeepAlive, &screen.tmrKeepAliveEnhance}) {
        timer->setInterval(session.settings.KeepAlive);
        timer->setEnabled(false);
    }

    session.Busy = false;
    session.SilenceCount = 0;
    screen.cmbModule.clear();

    if (session.link.IsPortOpen())
        session.link.ClosePort(0);
    if (session.settings.TryAllProtocols)
        session.settings.ProtocolNumber = link::TryAll;

    SetToolbarConnected(session, false);
    ClearReadings(session);
    screen.StatusBar1.setText(1, "");
    screen.StatusBar1.setLamp(3, Lamp::Black);
}

} // namespace kvx::obd
