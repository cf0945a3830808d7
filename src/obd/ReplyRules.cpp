#include "obd/Connection.h"

// The reply tests, apart from the session code so they can be checked on their own.
namespace kvx::obd {

namespace {

constexpr std::size_t kShortestFirstReply = 15;

} // namespace

bool IsNegativeResponse(const std::string& reply)
{
    if (reply.size() < 10 || reply.compare(8, 2, "7F") != 0)
        return false;
    const std::string first = reply.substr(0, 2);
    if (first == "80" || first == "C0")
        return true;
    return first == "83" || first == "C3";
}

std::string FirstReplyProblem(const std::string& reply)
{
    if (reply.size() < kShortestFirstReply)
        return kIncompleteReplyText;
    // Unreachable while the length rule takes every empty reply; kept behind it so a silent unit
    // is still named should that rule ever be relaxed.
    if (reply.empty())
        return kNoReplyText;
    return {};
}

} // namespace kvx::obd
