#include "obd/SupportDiscovery.h"

#include "link/ReplyText.h"
#include "obd/FrameText.h"
#include "obd/RequestCycle.h"
#include "obd/SupportBitmap.h"
#include "session/Session.h"

namespace kvx::obd {

void DiscoverSupport(Session& session, int service, const std::string& suffix, int lastRange, int lastId)
{
    const auto column = static_cast<std::size_t>(service - 1);
    for (int id = 0; id <= lastId && id < Session::kPidRows; ++id)
        session.SupportedPids[static_cast<std::size_t>(id)][column] = false;
    if (session.LinkDown)
        return;
    for (int range = 0; range <= lastRange; range += 0x20) {
        if (range > 0 && !session.SupportedPids[static_cast<std::size_t>(range)][column])
            return;
        const std::string request =
            link::genericRequest(session.HeaderByte1, session.HeaderByte2, link::toHex(static_cast<std::uint8_t>(service)),
                                 link::toHex(static_cast<std::uint8_t>(range)) + suffix);
        for (const auto& frame : EcuMessages(session, RequestCycle(session, request)))
            MarkSupportBitmap(session.SupportedPids, frame, service);
    }
}

} // namespace kvx::obd
