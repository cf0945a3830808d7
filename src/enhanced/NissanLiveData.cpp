#include "enhanced/NissanLiveData.h"

#include "data/GridLayouts.h"
#include "data/ItemRows.h"
#include "enhanced/NissanConnection.h"
#include "enhanced/NissanKeepAlive.h"
#include "enhanced/SensorRows.h"
#include "log/LogFile.h"
#include "obd/KeepAlive.h"
#include "obd/LiveLoop.h"
#include "obd/RequestCycle.h"
#include "session/MainScreen.h"
#include "session/Session.h"

namespace kvx::enhanced {

namespace {

constexpr std::size_t kIdentifierLength = 4;

// The display texts of one reply in its row; a switch row shows its own bit of the register.
void showReply(Session& session, int row, const std::string& reply)
{
    GridModel& grid = session.screen.GridMode1;
    const std::string label = grid.text(row, data::PidColumn);
    for (int kind : {1, 2})
        grid.setText(row, kind == 1 ? data::ValueColumn : data::AltValueColumn,
                     data::NissanRowValue(session.nissanDecoder, label, reply, kind, session.ModuleIndex));
}

} // namespace

void RunNissanLiveData(Session& session)
{
    obd::RunLivePasses(session, session.screen.tmrKeepAliveEnhance, RearmEnhancedKeepAlive,
                       [&] { return PollNissanLiveData(session); });
}

bool PollNissanLiveData(Session& session)
{
    session.screen.StatusBar1.setText(3, "");
    const auto highlight = [&](int row) { HighlightPolledRow(session, row); };
    return obd::WalkLiveRows(session, highlight, [&](int row) {
        // A switch row asks for its whole register; the bit is picked out of the reply.
        const std::string identifier = session.screen.GridMode1.text(row, data::PidColumn).substr(0, kIdentifierLength);
        const std::string reply = obd::RequestCycle(session, "0522" + identifier + "0401");
        if (obd::CountLiveSilence(session, reply, [&] { ReconnectNissan(session); })) {
            obd::DropSilentSession(session);
            return false;
        }
        // An empty reply is recorded and shown too: the decoder gives blank texts for it.
        log::WriteLogFrame(session, reply);
        showReply(session, row, reply);
        return true;
    });
}

} // namespace kvx::enhanced
