// Kept apart from the window's own file so that the window can be built and tested with other
// timing and decoding than the link's.
#include "log/LinkReplay.h"
#include "log/frmLogController.h"
#include "session/Session.h"

namespace kvx::log {

frmLogController::frmLogController(Session& session, QWidget* parent)
    : frmLogController(session, std::make_unique<LinkStopwatch>(session.link), SessionFrameHandlers(session),
                       LinkLiveDecoding(session.link), parent)
{
}

} // namespace kvx::log
