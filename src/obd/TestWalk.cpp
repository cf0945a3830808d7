#include "obd/TestWalk.h"

#include "link/LinkSession.h"
#include "obd/Disconnect.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

#include <cstdio>

namespace kvx::obd {

bool IsRangeMarker(int id)
{
    return id % 0x20 == 0;
}

std::string TestIdText(int id)
{
    char text[8];
    std::snprintf(text, sizeof text, "%02X", static_cast<unsigned>(id));
    return text;
}

bool ReviveBeforeRequest(Session& session)
{
    if (session.SilenceCount >= 3 && session.SilenceCount < 14) {
        session.screen.StatusBar1.setText(1, "RECONNECTING...");
        std::string result;
        const auto& s = session.settings;
        if (session.link.InitializeEcu("33", s.BaudRate, s.PortNumber, s.ProtocolNumber, "", true, result))
            session.screen.StatusBar1.setText(1, "");
        else
            ++session.SilenceCount;
    }
    if (session.SilenceCount >= 14) {
        Disconnect(session);
        session.shell.messageBox("No Communication", "No Response From ECU", MessageIcon::Exclamation);
        return false;
    }
    return true;
}

void CountReply(Session& session, const std::string& reply)
{
    if (reply.empty())
        ++session.SilenceCount;
    else
        session.SilenceCount = 0;
}

} // namespace kvx::obd
