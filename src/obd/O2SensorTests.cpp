#include "obd/O2SensorTests.h"

#include "link/LinkSession.h"
#include "obd/O2SensorNames.h"
#include "obd/RequestCycle.h"
#include "obd/ServiceCycle.h"
#include "obd/SupportDiscovery.h"
#include "obd/TestWalk.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

namespace kvx::obd {

namespace {

constexpr int kService = 5;
constexpr std::size_t kColumn = kService - 1;

} // namespace

void RequestO2SensorTests(Session& session)
{
    if (!GenericServiceAllowed(session))
        return;
    {
        KeepAlivePause pause(session);
        // The heading row was written when the window laid its grids out; only results go.
        session.screen.gridMode5.setRows(1);
        // The support request names a sensor too; any sensor will do, the chosen one is as good.
        std::string sensor = O2SensorNumber(session.screen.cmbMode5.text());
        DiscoverSupport(session, kService, sensor.empty() ? "01" : sensor, 0xE0, kLastTestId);
        ReadO2SensorTests(session, session.HeaderByte1, session.HeaderByte2);
    }
    session.screen.StatusBar1.setText(1, "");
}

void ReadO2SensorTests(Session& session, const std::string& headerByte1, const std::string& headerByte2)
{
    const std::string sensor = O2SensorNumber(session.screen.cmbMode5.text());
    auto& grid = session.screen.gridMode5;
    for (int tid = 1; tid <= kLastTestId; ++tid) {
        if (IsRangeMarker(tid))
            continue;
        if (session.LinkDown)
            return;
        if (!session.SupportedPids[static_cast<std::size_t>(tid)][kColumn])
            continue;
        const std::string id = TestIdText(tid);
        session.screen.StatusBar1.setText(1, "TEST ID..." + id);
        if (!ReviveBeforeRequest(session))
            return;
        const std::string reply = RequestCycle(session, headerByte1 + headerByte2 + "F105" + id + sensor);
        CountReply(session, reply);
        for (const auto& frame : SplitFrames(reply)) {
            if (!FromEcu(session, frame))
                continue;
            const int row = grid.addRow();
            grid.setText(row, 0, id);
            grid.setText(row, 1, O2TestDescription(tid));
            grid.setText(row, 2, session.link.FormatOxygenTest(frame, 1));
            grid.setText(row, 3, session.link.FormatOxygenTest(frame, 2));
            grid.setText(row, 4, session.link.FormatOxygenTest(frame, 3));
        }
        session.shell.processEvents();
    }
}

} // namespace kvx::obd
