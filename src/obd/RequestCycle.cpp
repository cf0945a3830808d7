#include "obd/RequestCycle.h"

#include "link/LinkSession.h"
#include "session/Session.h"

namespace kvx::obd {

std::string RequestCycle(Session& session, const std::string& request)
{
    return RequestCycle(session, request, session.LastFrame, session.LastRaw, session.LastResponse);
}

std::string RequestCycle(Session& session, const std::string& request, std::string& frame, std::string& raw,
                         std::string& response)
{
    frame = session.link.EncodeRequest(request);
    raw = session.link.Transact(frame);
    response = session.link.DecodeReply(raw);
    return response;
}

} // namespace kvx::obd
