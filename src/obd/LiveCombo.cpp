#include "obd/LiveCombo.h"

#include "link/LinkSession.h"
#include "link/ReplyText.h"
#include "log/LogFile.h"
#include "obd/FrameText.h"
#include "obd/KeepAlive.h"
#include "obd/LiveLoop.h"
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

} // namespace

const ComboReading& GenericComboReading()
{
    static const ComboReading reading{
        [](const Session& session, const std::string&, const std::string& frame, int kind) {
            return session.link.FormatLiveValue(frame, kind);
        },
        [](const std::string&, const std::string& frame) { return frame; }};
    return reading;
}

void StartLiveCombo(Session& session)
{
    RunLiveCombo(session, GenericComboReading());
}

void RunLiveCombo(Session& session, const ComboReading& reading)
{
    if (!session.link.IsPortOpen())
        return;
    session.Busy = true;
    while (KeepPolling(session)) {
        bool goOn = false;
        {
            KeepAlivePause pause(session);
            goOn = PollLiveCombo(session, reading);
        }
        if (!goOn)
            break;
        session.shell.processEvents();
    }
    session.Busy = false;
}

bool PollLiveCombo(Session& session, const ComboReading& reading)
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
            RequestCycle(session, link::genericRequest(session.HeaderByte1, session.HeaderByte2, "01", choice.substr(0, 2)));
        if (CountLiveSilence(session, reply, [&] { ReconnectAfterSilence(session); })) {
            session.shell.messageBox(kNoCommunication, kNoResponseFromEcu, MessageIcon::Exclamation);
            return false;
        }
        for (const auto& frame : EcuMessages(session, reply)) {
            log::WriteLogFrame(session, reading.logText(choice, frame));
            screen.lblPid[slot].setText(reading.value(session, choice, frame, 1));
            screen.lblPida[slot].setText(reading.value(session, choice, frame, 2));
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
