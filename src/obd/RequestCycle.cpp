#include "obd/RequestCycle.h"

#include "link/LinkSession.h"
#include "session/Session.h"

namespace kvx::obd {

std::string RequestCycle(Session& session, const std::string& request)
{
    session.LastFrame = session.link.EncodeRequest(request);
    session.LastRaw = session.link.Transact(session.LastFrame);
    session.LastResponse = session.link.DecodeReply(session.LastRaw);
    return session.LastResponse;
}

} // namespace kvx::obd
