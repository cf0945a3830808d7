#include "obd/ServiceCycle.h"

#include "link/LinkSession.h"
#include "session/MainScreen.h"
#include "session/Session.h"

namespace kvx::obd {

bool GenericServiceAllowed(const Session& session)
{
    return session.ModuleIndex == ModuleGeneric && session.link.IsPortOpen();
}

KeepAlivePause::KeepAlivePause(Session& session) : session_(session)
{
    session_.screen.tmrKeepAlive.setEnabled(false);
}

KeepAlivePause::~KeepAlivePause()
{
    session_.screen.tmrKeepAlive.setInterval(session_.settings.KeepAlive);
    session_.screen.tmrKeepAlive.setEnabled(true);
}

P3Override::P3Override(Session& session, int ms) : session_(session), kept_(session.link.GetP3Delay())
{
    session_.link.SetP3Delay(ms);
}

P3Override::~P3Override()
{
    session_.link.SetP3Delay(kept_);
}

} // namespace kvx::obd
