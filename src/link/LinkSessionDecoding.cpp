// The decoding members of LinkSession: thin calls to the pure decoders, so that anything without
// a session (kvx decode, the log exporter) decodes exactly as the link does.
#include "link/LinkSession.h"

#include "link/decode/InfoValue.h"
#include "link/decode/MonitorScaling.h"
#include "link/decode/PidValue.h"
#include "link/decode/ServiceReply.h"
#include "link/decode/TestResults.h"
#include "link/decode/TroubleCodes.h"
#include "link/decode/Vin.h"

namespace kvx::link {

std::string LinkSession::FormatLiveValue(const std::string& message, int selector) const
{
    return decode::formatLiveValue(message, selector);
}

std::string LinkSession::DescribePid(const std::string& pid, const std::string& o2Layout) const
{
    return decode::describePid(pid, o2Layout);
}

std::string LinkSession::FormatFreezeFrameValue(const std::string& message, int selector) const
{
    return decode::formatFreezeFrameValue(message, selector);
}

std::string LinkSession::FormatTroubleCode(const std::string& message, int count) const
{
    return decode::formatTroubleCodes(message, count);
}

std::string LinkSession::FormatOxygenTest(const std::string& message, int selector) const
{
    return decode::formatOxygenTest(message, selector);
}

MonitorTestTexts LinkSession::FormatMonitorTest(const std::string& message) const
{
    return decode::formatMonitorTest(message);
}

std::vector<MonitorTestTexts> LinkSession::FormatMonitorTestRows(const std::string& message) const
{
    std::vector<MonitorTestTexts> rows = decode::formatCanMonitorTest(message);
    if (rows.empty())
        rows.push_back(decode::formatMonitorTest(message));
    return rows;
}

std::string LinkSession::FormatServiceReply(const std::string& message) const
{
    return decode::formatServiceReply(message);
}

std::string LinkSession::FormatInfoValue(const std::string& message) const
{
    return decode::formatInfoValue(message);
}

std::string LinkSession::FormatVin(const std::string& reply) const
{
    return decode::formatVin(reply);
}

} // namespace kvx::link
