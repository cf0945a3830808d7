#include "enhanced/ToyotaConnection.h"

#include "data/GridLayouts.h"
#include "data/ItemRows.h"
#include "enhanced/SensorRows.h"
#include "link/Hex.h"
#include "obd/Connection.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

namespace kvx::enhanced {

namespace {

// The manufacturer parameters lie above 0xB0; their bitmaps are asked unconditionally.
constexpr const char* kSupportPids[] = {"B0", "C0", "E0"};
constexpr int kFirstPid = 0xB1;
constexpr int kLastPid = 0xFF;

bool discoverToyota(Session& session)
{
    for (const char* pid : kSupportPids) {
        session.screen.StatusBar1.setText(1, std::string("REQUESTING...") + pid);
        obd::SendRequest(session, session.HeaderByte1, session.HeaderByte2, "01", pid, "01");
    }
    return true;
}

void fillToyotaScreen(Session& session)
{
    data::LayoutLiveDataGrid(session.screen);
    AddToyotaSensors(session);
}

} // namespace

bool ConnectToyota(Session& session)
{
    return obd::Negotiate(session, obd::Negotiation{255, discoverToyota, fillToyotaScreen});
}

void AddToyotaSensors(Session& session)
{
    auto& lists = session.screen.cmbPid;
    for (ListModel& list : lists) {
        list.clear();
        list.addItem("OFF");
    }
    int count = 0;
    for (int pid = kFirstPid; pid <= kLastPid; ++pid) {
        if (!session.SupportedPids[static_cast<std::size_t>(pid)][0])
            continue;
        for (const data::ItemRow& row : data::ToyotaRows(session.toyotaDecoder, link::toHex(static_cast<std::uint8_t>(pid)))) {
            AddSensorRow(session, count, row.label, row.name);
            for (ListModel& list : lists)
                list.addItem(row.label + " - " + row.name);
        }
    }
    for (ListModel& list : lists)
        list.setCurrentIndex(0);
}

} // namespace kvx::enhanced
