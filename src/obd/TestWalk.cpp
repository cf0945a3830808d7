#include "obd/TestWalk.h"

#include "link/ReplyText.h"
#include "obd/FrameText.h"
#include "obd/KeepAlive.h"
#include "obd/RequestCycle.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

namespace kvx::obd {

namespace {

bool isRangeMarker(int id)
{
    return id % 0x20 == 0;
}

// False when the unit stayed silent too long: the session is closed then.
bool reviveBeforeRequest(Session& session)
{
    WakeUpAfterSilence(session, [&] { return ReconnectAfterSilence(session); });
    if (session.SilenceCount < kKeepAliveGiveUpAt)
        return true;
    DropSilentSession(session);
    return false;
}

void countReply(Session& session, const std::string& reply)
{
    if (reply.empty())
        ++session.SilenceCount;
    else
        session.SilenceCount = 0;
}

} // namespace

void WalkTests(Session& session, const std::string& headerByte1, const std::string& headerByte2, int service,
               const std::string& suffix, const TestAnswer& answer)
{
    const auto column = static_cast<std::size_t>(service - 1);
    const std::string serviceId = link::toHex(static_cast<std::uint8_t>(service));
    for (int tid = 1; tid <= kLastTestId; ++tid) {
        if (isRangeMarker(tid))
            continue;
        if (session.LinkDown)
            return;
        if (!session.SupportedPids[static_cast<std::size_t>(tid)][column])
            continue;
        const std::string id = link::toHex(static_cast<std::uint8_t>(tid));
        session.screen.StatusBar1.setText(1, "TEST ID..." + id);
        if (!reviveBeforeRequest(session))
            return;
        const std::string reply =
            RequestCycle(session, link::genericRequest(headerByte1, headerByte2, serviceId, id + suffix));
        countReply(session, reply);
        for (const std::string& message : EcuMessages(session, reply))
            answer(tid, id, message);
        session.shell.processEvents();
    }
}

} // namespace kvx::obd
