#include "obd/LiveLoop.h"

#include "data/GridLayouts.h"
#include "link/LinkSession.h"
#include "obd/CommandGuard.h"
#include "obd/Connection.h"
#include "obd/KeepAlive.h"
#include "obd/LiveData.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

namespace kvx::obd {

namespace {

// A pass that sent nothing (every row unticked) waits this long before the next one, so an idle
// loop sleeps instead of spinning.
constexpr link::Micros kIdlePassWait = link::ms(20);

bool stillPolling(const Session& session)
{
    return session.Busy && !session.LinkDown && session.screen.TabStrip1.selectedCaption() == kLiveDataCaption;
}

bool anyTicked(const GridModel& grid)
{
    for (int row = 1; row < grid.rows(); ++row)
        if (grid.text(row, data::MarkerColumn) != data::kEmptyMarker)
            return true;
    return false;
}

// However the loop ends (a link or recorder fault included), the session is left idle with the
// module's keep-alive timer running while the link is up.
class BusyScope {
public:
    BusyScope(Session& session, void (*rearm)(Session&)) : session_(session), rearm_(rearm) { session_.Busy = true; }
    ~BusyScope()
    {
        session_.Busy = false;
        if (!session_.LinkDown)
            rearm_(session_);
    }
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;

private:
    Session& session_;
    void (*rearm_)(Session&);
};

} // namespace

bool CountLiveSilence(Session& session, const std::string& reply, const std::function<void()>& wakeUp)
{
    if (!reply.empty()) {
        session.SilenceCount = 0;
        session.screen.StatusBar1.setText(1, "");
    } else {
        ++session.SilenceCount;
    }
    if (session.SilenceCount >= kLiveGiveUpAt)
        return true;
    if (session.SilenceCount >= kLiveReconnectFrom)
        wakeUp();
    return false;
}

bool WalkLiveRows(Session& session, const std::function<void(int)>& visit, const std::function<bool(int)>& poll)
{
    const GridModel& grid = session.screen.GridMode1;
    const int rows = grid.rows();
    for (int row = 1; row < rows && row < grid.rows() && session.Busy && !session.LinkDown; ++row) {
        if (session.screen.TabStrip1.selectedCaption() != kLiveDataCaption) {
            session.Busy = false;
            break;
        }
        visit(row);
        if (grid.text(row, data::MarkerColumn) != data::kEmptyMarker && !poll(row))
            return false;
        session.shell.processEvents();
    }
    return true;
}

void RunLivePasses(Session& session, TimerModel& keepAlive, void (*rearm)(Session&),
                   const std::function<bool()>& pass)
{
    const BusyScope busy(session, rearm);
    RunLinkCommand(session, [&] {
        while (stillPolling(session)) {
            keepAlive.setEnabled(false);
            const bool idle = !anyTicked(session.screen.GridMode1);
            const bool goOn = pass();
            if (!session.LinkDown)
                rearm(session);
            if (!goOn)
                break;
            if (idle)
                session.link.clock().sleepFor(kIdlePassWait);
            // A pass over no rows let no events run; stop buttons and tab changes wait for this.
            session.shell.processEvents();
        }
    });
}

} // namespace kvx::obd
