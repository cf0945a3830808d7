#include "obd/CommandGuard.h"

#include "link/LinkError.h"
#include "obd/Connection.h"
#include "obd/Disconnect.h"
#include "session/Session.h"
#include "session/Shell.h"

namespace kvx::obd {

bool RunLinkCommand(Session& session, const std::function<void()>& command)
{
    try {
        command();
        return true;
    } catch (const link::LinkError& e) {
        // A refused request leaves the port and the unit as they were; every other fault means
        // the port or the cable can no longer be trusted.
        if (e.kind() != link::LinkError::Kind::BadRequest)
            Disconnect(session);
        session.Busy = false;
        session.shell.messageBox(kFailedCommunication, e.what(), MessageIcon::Exclamation);
        return false;
    }
}

} // namespace kvx::obd
