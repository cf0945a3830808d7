#include "obd/RequestCycle.h"

namespace kvx::obd {

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
