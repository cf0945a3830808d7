#include "obd/ServiceCycle.h"

#include "link/LinkSession.h"
#include "session/MainScreen.h"
#include "session/Session.h"

namespace kvx::obd {

std::string RunRequestCycle(Session& session, const std::string& request)
{
    session.LastFrame = session.link.EncodeRequest(request);
    session.LastRaw = session.link.Transact(session.LastFrame);
    session.LastResponse = session.link.DecodeReply(session.LastRaw);
    return session.LastResponse;
}

bool GenericServiceAllowed(const Session& session)
{
    return session.ModuleIndex == ModuleGeneric && session.link.IsPortOpen();
}

void PauseKeepAlive(Session& session)
{
    session.screen.tmrKeepAlive.setEnabled(false);
}

void ResumeKeepAlive(Session& session)
{
    session.screen.tmrKeepAlive.setInterval(session.settings.KeepAlive);
    session.screen.tmrKeepAlive.setEnabled(true);
}

} // namespace kvx::obd
