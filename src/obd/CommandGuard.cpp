#include "obd/CommandGuard.h"

#include "link/LinkError.h"
#include "log/Recorder.h"
#include "obd/Connection.h"
#include "obd/Disconnect.h"
#include "obd/KeepAlive.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

namespace kvx::obd {

namespace {

void reportLinkFault(Session& session, const link::LinkError& e)
{
    session.shell.messageBox(kFailedCommunication, e.what(), MessageIcon::Exclamation);
}

// After a fault nobody planned for, nothing may look busy and no recording may be left without
// its frame count.
void settle(Session& session)
{
    session.Busy = false;
    if (session.Logging) {
        session.screen.control("chkLog").setChecked(false);
        log::StopLogging(session);
    }
}

TimerModel& moduleKeepAlive(Session& session)
{
    const bool nissan = session.ModuleIndex == ModuleNissanEcu || session.ModuleIndex == ModuleNissanTcu;
    return nissan ? session.screen.tmrKeepAliveEnhance : session.screen.tmrKeepAlive;
}

} // namespace

bool RunLinkCommand(Session& session, const std::function<void()>& command)
{
    try {
        command();
        return true;
    } catch (const link::LinkError& e) {
        // A refused request leaves the port and the unit as they were; every other fault means
        // the port or the cable can no longer be trusted.
        if (e.kind() != link::LinkError::Kind::BadRequest)
            Disconnect(session);
        session.Busy = false;
        reportLinkFault(session, e);
        return false;
    } catch (...) {
        settle(session);
        throw;
    }
}

bool RunConnection(Session& session, const std::function<bool()>& connect)
{
    try {
        return connect();
    } catch (const link::LinkError& e) {
        Disconnect(session);
        reportLinkFault(session, e);
        return false;
    } catch (...) {
        Disconnect(session);
        throw;
    }
}

bool RunCommand(Session& session, const std::function<void()>& command)
{
    try {
        return RunLinkCommand(session, command);
    } catch (const std::exception& e) {
        if (!session.LinkDown)
            ArmKeepAlive(session, moduleKeepAlive(session));
        session.shell.messageBox(kProgramFault, std::string("The command stopped: ") + e.what(),
                                 MessageIcon::Critical);
        return false;
    }
}

} // namespace kvx::obd
