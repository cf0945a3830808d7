#include "obd/LiveData.h"

#include "data/GridLayouts.h"
#include "link/LinkSession.h"
#include "link/ReplyText.h"
#include "log/LogFile.h"
#include "obd/CommandGuard.h"
#include "obd/Connection.h"
#include "obd/FrameText.h"
#include "obd/KeepAlive.h"
#include "obd/LiveLoop.h"
#include "obd/O2SensorList.h"
#include "obd/RequestCycle.h"
#include "obd/SupportedPids.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

namespace kvx::obd {

namespace {

constexpr int kLastListedPid = 0x60;

// The parameters worth a row: supported in service 01, without the support bitmaps themselves.
std::vector<int> listedPids(const Session& session)
{
    std::vector<int> pids;
    for (int pid = 1; pid <= kLastListedPid; ++pid)
        if (pid % 0x20 != 0 && session.SupportedPids[static_cast<std::size_t>(pid)][0])
            pids.push_back(pid);
    return pids;
}

// Writes the messages of the unit in use into the row; others are dropped without a word.
void showReply(Session& session, int row, const std::string& reply)
{
    GridModel& grid = session.screen.GridMode1;
    for (const std::string& message : EcuMessages(session, reply)) {
        log::WriteLogFrame(session, message);
        grid.setText(row, data::ValueColumn, session.link.FormatLiveValue(message, 1));
        grid.setText(row, data::AltValueColumn, session.link.FormatLiveValue(message, 2));
    }
}

// Unticking a row blanks its values: a value nobody polls any more is not shown as current.
void tickRow(GridModel& grid, int row, bool ticked)
{
    grid.setCell(row, data::MarkerColumn, data::MarkerCell(ticked ? data::kTickedMarker : data::kEmptyMarker));
    if (!ticked) {
        grid.setText(row, data::ValueColumn, "");
        grid.setText(row, data::AltValueColumn, "");
    }
}

} // namespace

void StartLiveData(Session& session)
{
    RunLivePasses(session, session.screen.tmrKeepAlive, RestartKeepAlive,
                  [&] { return PollLiveData(session, session.HeaderByte1, session.HeaderByte2); });
}

bool PollLiveData(Session& session, const std::string& headerByte1, const std::string& headerByte2)
{
    return WalkLiveRows(session, [](int) {}, [&](int row) {
        const std::string pid = session.screen.GridMode1.text(row, data::PidColumn);
        const std::string reply = RequestCycle(session, link::genericRequest(headerByte1, headerByte2, "01", pid));
        if (CountLiveSilence(session, reply, [&] { ReconnectAfterSilence(session); })) {
            session.Busy = false;
            session.shell.messageBox(kNoCommunication, kNoResponseFromEcu, MessageIcon::Exclamation);
            return false;
        }
        showReply(session, row, reply);
        return true;
    });
}

void StopLiveData(Session& session)
{
    session.Busy = false;
    session.screen.StatusBar1.setText(1, "");
}

void ToggleLiveDataRow(Session& session, int row)
{
    GridModel& grid = session.screen.GridMode1;
    if (session.Busy || row < 1 || row >= grid.rows())
        return;
    if (grid.text(row, data::MarkerColumn) == data::kTickedMarker)
        tickRow(grid, row, false);
    else if (grid.text(row, data::MarkerColumn) == data::kEmptyMarker)
        tickRow(grid, row, true);
}

void TickAllLiveDataRows(Session& session, bool ticked)
{
    GridModel& grid = session.screen.GridMode1;
    if (session.Busy)
        return;
    for (int row = 1; row < grid.rows(); ++row)
        if (grid.text(row, data::MarkerColumn) == (ticked ? data::kEmptyMarker : data::kTickedMarker))
            tickRow(grid, row, ticked);
}

void ToggleAllLiveDataRows(Session& session)
{
    const GridModel& grid = session.screen.GridMode1;
    bool allTicked = true;
    for (int row = 1; row < grid.rows(); ++row)
        allTicked = allTicked && grid.text(row, data::MarkerColumn) != data::kEmptyMarker;
    TickAllLiveDataRows(session, !allTicked);
}

void BuildLiveDataGrid(Session& session)
{
    data::LayoutLiveDataGrid(session.screen);
    GridModel& grid = session.screen.GridMode1;
    const std::string layout = O2Layout(session);
    for (int pid : listedPids(session)) {
        const int row = grid.addRow();
        const std::string pp = link::toHex(static_cast<std::uint8_t>(pid));
        grid.setCell(row, data::MarkerColumn, data::MarkerCell(data::kTickedMarker));
        grid.setText(row, data::PidColumn, pp);
        grid.setText(row, data::DescriptionColumn, session.link.DescribePid(pp, layout));
    }
}

void FillPidLists(Session& session)
{
    const std::vector<int> pids = listedPids(session);
    const std::string layout = O2Layout(session);
    for (ListModel& list : session.screen.cmbPid) {
        list.clear();
        list.addItem("OFF");
        for (int pid : pids) {
            const std::string pp = link::toHex(static_cast<std::uint8_t>(pid));
            list.addItem(pp + " - " + session.link.DescribePid(pp, layout));
        }
        list.setCurrentIndex(0);
    }
}

void RediscoverSupportedPids(Session& session)
{
    if (!session.link.IsPortOpen())
        return;
    session.screen.StatusBar1.setText(1, "STOP QUERYING");
    session.SilenceCount = 0;
    RunLinkCommand(session, [&] {
        session.screen.tmrKeepAlive.setEnabled(false);
        ClearSupportedPids(session, 1);
        RequestSupportBitmaps(session, false);
        BuildLiveDataGrid(session);
        FillPidLists(session);
        FillO2SensorList(session);
        RestartKeepAlive(session);
    });
}

} // namespace kvx::obd
