#include "obd/LiveCombo.h"

#include "link/LinkSession.h"
#include "log/LogFile.h"
#include "obd/RequestCycle.h"
#include "obd/ServiceCycle.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

namespace kvx::obd {

namespace {

constexpr int kIdleRestMs = 20;

bool ComboShown(const Session& session)
{
    return session.screen.TabStrip1.selectedCaption() == kComboCaption;
}

bool KeepPolling(const Session& session)
{
    return session.Busy && !session.LinkDown && ComboShown(session);
}

// Counted as the live-data grid counts: from the third silent reply in a row each further one
// tries a new wake-up; the sixth ends polling. False at the sixth.
bool CountSilence(Session& session, const std::string& reply)
{
    if (!reply.empty()) {
        session.SilenceCount = 0;
        session.screen.StatusBar1.setText(1, "");
    } else {
        ++session.SilenceCount;
    }
    if (session.SilenceCount >= 6) {
        session.shell.messageBox("No Communication", "No Response From ECU", MessageIcon::Exclamation);
        return false;
    }
    if (session.SilenceCount >= 3) {
        session.screen.StatusBar1.setText(1, "RECONNECTING...");
        // The next replies tell whether the wake-up worked.
        std::string result;
        const auto& s = session.settings;
        session.link.InitializeEcu("33", s.BaudRate, s.PortNumber, s.ProtocolNumber, "", true, result);
    }
    return true;
}

} // namespace

void StartLiveCombo(Session& session)
{
    if (!session.link.IsPortOpen())
        return;
    session.Busy = true;
    while (KeepPolling(session)) {
        bool goOn = false;
        {
            KeepAlivePause pause(session);
            goOn = PollLiveCombo(session);
        }
        if (!goOn)
            break;
    }
    session.Busy = false;
}

bool PollLiveCombo(Session& session)
{
    auto& screen = session.screen;
    bool sent = false;
    for (std::size_t slot = 0; slot < screen.cmbPid.size(); ++slot) {
        if (!KeepPolling(session))
            return true;
        const std::string choice = screen.cmbPid[slot].text();
        if (choice.size() < 2 || choice == "OFF") {
            session.shell.processEvents();
            continue;
        }
        sent = true;
        const std::string reply =
            RequestCycle(session, session.HeaderByte1 + session.HeaderByte2 + "F101" + choice.substr(0, 2));
        if (!CountSilence(session, reply))
            return false;
        for (const auto& frame : SplitFrames(reply)) {
            if (!FromEcu(session, frame))
                continue;
            log::WriteLogFrame(session, frame);
            screen.lblPid[slot].setText(session.link.FormatLiveValue(frame, 1));
            screen.lblPida[slot].setText(session.link.FormatLiveValue(frame, 2));
        }
        session.shell.processEvents();
    }
    // With every slot "OFF" the loop only waits for the user; it rests instead of spinning.
    if (!sent)
        session.link.clock().sleepFor(link::ms(kIdleRestMs));
    return true;
}

void StopLiveCombo(Session& session)
{
    session.Busy = false;
    session.screen.StatusBar1.setText(1, "");
}

} // namespace kvx::obd
