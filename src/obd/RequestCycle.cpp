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

std::vector<std::string> SplitMessages(const std::string& reply)
{
    std::vector<std::string> messages;
    if (reply.empty())
        return messages;
    std::size_t start = 0;
    for (std::size_t colon; (colon = reply.find(':', start)) != std::string::npos; start = colon + 1)
        messages.push_back(reply.substr(start, colon - start));
    messages.push_back(reply.substr(start));
    return messages;
}

std::string SourceAddress(const std::string& message)
{
    return message.size() >= 6 ? message.substr(4, 2) : std::string();
}

} // namespace kvx::obd
