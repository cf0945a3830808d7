#include "obd/O2SensorTests.h"

#include "link/LinkSession.h"
#include "obd/O2SensorNames.h"
#include "obd/ServiceCycle.h"
#include "obd/SupportDiscovery.h"
#include "obd/TestWalk.h"
#include "session/MainScreen.h"
#include "session/Session.h"

namespace kvx::obd {

namespace {

constexpr int kService = 5;

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
    WalkTests(session, headerByte1, headerByte2, kService, sensor, [&](int tid, const std::string& id, const std::string& frame) {
        const int row = grid.addRow();
        grid.setText(row, 0, id);
        grid.setText(row, 1, O2TestDescription(tid));
        grid.setText(row, 2, session.link.FormatOxygenTest(frame, 1));
        grid.setText(row, 3, session.link.FormatOxygenTest(frame, 2));
        grid.setText(row, 4, session.link.FormatOxygenTest(frame, 3));
    });
}

} // namespace kvx::obd
