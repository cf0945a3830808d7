#include "obd/FrameText.h"

#include "link/ReplyText.h"
#include "session/Session.h"

namespace kvx::obd {

bool FromEcu(const Session& session, const std::string& message)
{
    const std::string source = link::sourceText(message);
    return !source.empty() && source == session.EcuAddress;
}

std::vector<std::string> EcuMessages(const Session& session, const std::string& reply)
{
    std::vector<std::string> messages;
    for (std::string& message : link::splitReply(reply))
        if (FromEcu(session, message))
            messages.push_back(std::move(message));
    return messages;
}

} // namespace kvx::obd
