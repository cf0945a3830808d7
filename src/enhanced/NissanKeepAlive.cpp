#include "enhanced/NissanKeepAlive.h"

#include "enhanced/NissanConnection.h"
#include "link/LinkSession.h"
#include "obd/CommandGuard.h"
#include "obd/KeepAlive.h"
#include "session/MainScreen.h"
#include "session/Session.h"

namespace kvx::enhanced {

namespace {

// The first support request doubles as the keep-alive: any positive answer shows the unit is
// still listening.
constexpr const char* kKeepAliveBody = "052211000401";

bool positive(const std::string& raw)
{
    return raw.size() >= 4 && raw.substr(2, 2) == "62";
}

void tick(Session& session)
{
    obd::WakeUpAfterSilence(session, session.screen.tmrKeepAliveEnhance, [&] { return ReconnectNissan(session); });

    if (session.SilenceCount < obd::kKeepAliveGiveUpAt && !session.LinkDown) {
        if (!session.link.IsPortOpen())
            return;
        if (positive(obd::LampedExchange(session, kKeepAliveBody)))
            session.SilenceCount = 0;
        else
            ++session.SilenceCount;
    }
    if (session.SilenceCount >= obd::kKeepAliveGiveUpAt || session.LinkDown)
        obd::DropSilentSession(session);
}

} // namespace

void RearmEnhancedKeepAlive(Session& session)
{
    obd::ArmKeepAlive(session, session.screen.tmrKeepAliveEnhance);
}

void NissanKeepAliveTick(Session& session)
{
    if (session.Busy)
        return;
    obd::RunLinkCommand(session, [&] { tick(session); });
}

} // namespace kvx::enhanced
