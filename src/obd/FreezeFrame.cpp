#include "obd/FreezeFrame.h"

#include "link/LinkSession.h"
#include "link/ReplyText.h"
#include "obd/FrameText.h"
#include "obd/RequestCycle.h"
#include "obd/ServiceCycle.h"
#include "obd/SupportDiscovery.h"
#include "obd/SupportedPids.h"
#include "obd/TextColumns.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

namespace kvx::obd {

namespace {

constexpr int kFreezeFrameWait = 500;
constexpr int kLastPid = 96;
constexpr int kFreezeFrameColumn = 1;

bool Supported(const Session& session, int pid, int column)
{
    return session.SupportedPids[static_cast<std::size_t>(pid)][static_cast<std::size_t>(column)];
}

// The run flag is set for the walk (the stop button clears it) and cleared however it ends.
class RunFlag {
public:
    explicit RunFlag(Session& session) : session_(session) { session_.Busy = true; }
    ~RunFlag() { session_.Busy = false; }
    RunFlag(const RunFlag&) = delete;
    RunFlag& operator=(const RunFlag&) = delete;

private:
    Session& session_;
};

// True for the identifiers service 02 does not carry as values (support ranges, the
// oxygen-sensor layouts, the monitor status).
bool SkippedInFreezeFrame(int pid)
{
    return pid == 0x01 || pid == 0x13 || pid == 0x1D || pid == 0x20 || pid == 0x40 || pid == 0x41;
}

} // namespace

void RequestFreezeFrame(Session& session)
{
    if (!GenericServiceAllowed(session))
        return;
    auto& frames = session.screen.cmbFrame;
    if (frames.items().empty()) {
        frames.addItem("00");
        if (frames.text().empty())
            frames.setCurrentIndex(0);
    }
    session.screen.txtMode2.clear();
    {
        KeepAlivePause pause(session);
        P3Override quick(session, kFreezeFrameWait);
        RunFlag running(session);
        DiscoverSupport(session, 2, frames.text(), 0x40, kLastPid);
        ReadFreezeFrame(session, session.HeaderByte1, session.HeaderByte2);
    }
    session.screen.StatusBar1.setText(1, "");
}

void ReadFreezeFrame(Session& session, const std::string& headerByte1, const std::string& headerByte2)
{
    const std::string layout = O2Layout(session);
    // Sent as typed: some units number their frames beyond the list's entries.
    const std::string frameNumber = session.screen.cmbFrame.text();
    session.screen.StatusBar1.setText(3, "");

    auto& box = session.screen.txtMode2;
    for (int pid = 1; pid <= kLastPid; ++pid) {
        if (SkippedInFreezeFrame(pid) || !Supported(session, pid, kFreezeFrameColumn))
            continue;
        if (!session.Busy || session.LinkDown)
            return;
        const std::string id = link::toHex(static_cast<std::uint8_t>(pid));
        const std::string reply = RequestCycle(session, link::genericRequest(headerByte1, headerByte2, "02", id + frameNumber));
        for (const auto& frame : EcuMessages(session, reply)) {
            box.setColor(kBlack);
            box.append(PadOrCut(session.link.DescribePid(id, layout), kFreezeDescriptionWidth) + kLineBreak);
            box.setColor(kRed);
            box.append(PadOrCut(session.link.FormatFreezeFrameValue(frame, 1), kFreezeValueWidth));
            box.append(PadOrCut(session.link.FormatFreezeFrameValue(frame, 2), kFreezeValueWidth) + kLineBreak + kLineBreak);
            box.setColor(kBlack);
        }
        session.shell.processEvents();
    }
    if (session.LastResponse.empty()) {
        box.moveCaretToEnd();
        box.insertAtCaret(std::string("No Response From ECU") + kLineBreak);
    }
}

} // namespace kvx::obd
