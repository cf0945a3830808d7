#include "obd/MonitorTests.h"

#include "link/LinkSession.h"
#include "link/decode/ModeSixDecoder.h"
#include "obd/ServiceCycle.h"
#include "obd/SupportDiscovery.h"
#include "obd/TestWalk.h"
#include "session/MainScreen.h"
#include "session/Session.h"

namespace kvx::obd {

namespace {

constexpr int kService = 6;

} // namespace

void RequestMonitorTests(Session& session)
{
    if (!GenericServiceAllowed(session))
        return;
    {
        KeepAlivePause pause(session);
        // The heading row was written when the window laid its grids out; only results go.
        session.screen.gridMode6.setRows(1);
        DiscoverSupport(session, kService, "", 0xE0, kLastTestId);
        ReadMonitorTests(session, session.HeaderByte1, session.HeaderByte2);
    }
    session.screen.StatusBar1.setText(1, "");
}

void ReadMonitorTests(Session& session, const std::string& headerByte1, const std::string& headerByte2)
{
    const std::string make = session.screen.cmbMake.text();
    const std::string year = session.screen.cmbYear.text();
    const link::ModeSixDecoder decoder;
    auto& grid = session.screen.gridMode6;
    WalkTests(session, headerByte1, headerByte2, kService, "", [&](int, const std::string& id, const std::string& frame) {
        for (const link::MonitorTestTexts& test : session.link.FormatMonitorTestRows(frame)) {
            const int row = grid.addRow();
            grid.setText(row, 0, id);
            grid.setText(row, 1, test.component);
            // Standard monitors carry their own names; the older tests' titles differ between
            // makes, and without a make there is nothing to ask.
            if (!test.description.empty())
                grid.setText(row, 2, test.description);
            else if (!make.empty())
                grid.setText(row, 2, decoder.Describe(make, year, id, test.component, test.typeCode));
            grid.setText(row, 3, test.limit);
            grid.setText(row, 4, test.limitType);
            grid.setText(row, 5, test.result);
            grid.setText(row, 6, test.passFail);
        }
    });
}

} // namespace kvx::obd
