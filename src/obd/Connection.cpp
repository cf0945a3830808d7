#include "obd/Connection.h"

#include "link/LinkSession.h"
#include "link/ReplyText.h"
#include "obd/CommandGuard.h"
#include "obd/Disconnect.h"
#include "obd/KeepAlive.h"
#include "obd/LiveData.h"
#include "obd/O2SensorList.h"
#include "obd/RequestCycle.h"
#include "obd/SupportedPids.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

namespace kvx::obd {

namespace {

// Tries the chosen protocol, or 1, 2 and 3 in turn for "Try All"; leaves ProtocolNumber at the
// one that answered, or at 4 when none did. A link that searches the protocols itself gets
// "Try All" as one wake-up and says what it found.
bool wakeUp(Session& session)
{
    CommSettings& s = session.settings;
    if (s.ProtocolNumber == link::TryAll && session.link.SearchesProtocols()) {
        session.screen.StatusBar1.setText(1, "TRYING PROTOCOL " + std::to_string(s.ProtocolNumber) + "...");
        std::string result;
        if (!session.link.InitializeEcu("33", s.BaudRate, s.PortNumber, s.ProtocolNumber, "", false, result))
            return false;
        s.ProtocolNumber = session.link.ProtocolInUse();
        return true;
    }
    if (s.ProtocolNumber == link::TryAll)
        s.ProtocolNumber = link::Iso9141Slow;
    for (;;) {
        session.screen.StatusBar1.setText(1, "TRYING PROTOCOL " + std::to_string(s.ProtocolNumber) + "...");
        std::string result;
        if (session.link.InitializeEcu("33", s.BaudRate, s.PortNumber, s.ProtocolNumber, "", false, result))
            return true;
        if (!s.TryAllProtocols)
            return false;
        ++s.ProtocolNumber;
        if (s.ProtocolNumber == link::TryAll)
            return false;
    }
}

bool negotiate(Session& session, const Negotiation& negotiation)
{
    MainScreen& screen = session.screen;
    session.LinkDown = false;
    if (!wakeUp(session)) {
        ReportInitFailed(session, screen.tmrKeepAlive);
        return false;
    }
    ClearSupportedPids(session, 1, negotiation.lastClearedPid);

    screen.cmbModule.clear();
    const bool kwp = IsKwp(session.settings.ProtocolNumber);
    session.HeaderByte1 = kwp ? "C0" : "68";
    session.HeaderByte2 = kwp ? "33" : "6A";

    if (kwp) {
        const std::string check = SendRequest(session, session.HeaderByte1, session.HeaderByte2, "01", "00", "01");
        if (IsNegativeResponse(check)) {
            RefuseConnection(session, kNegativeResponseText);
            return false;
        }
    }

    if (!negotiation.discover(session))
        return false;

    screen.control("chkLog").setEnabled(true);
    screen.control("cmbModule").setVisible(true);
    SetToolbarConnected(session, true);
    RestartKeepAlive(session);
    negotiation.fillScreen(session);
    screen.StatusBar1.setText(1, "");
    return true;
}

// The generic module asks the "00" bitmap (then "20" and "40" as marked) and refuses a first
// answer that cannot be whole.
bool discoverGeneric(Session& session)
{
    const std::string problem = FirstReplyProblem(RequestSupportBitmaps(session, true));
    if (problem.empty())
        return true;
    RefuseConnection(session, problem);
    return false;
}

void fillGenericScreen(Session& session)
{
    session.screen.control("cmdGo").setVisible(true);
    BuildLiveDataGrid(session);
    FillPidLists(session);
    FillO2SensorList(session);
}

} // namespace

bool Negotiate(Session& session, const Negotiation& negotiation)
{
    return RunConnection(session, [&] { return negotiate(session, negotiation); });
}

bool ConnectEcu(Session& session)
{
    return Negotiate(session, Negotiation{96, discoverGeneric, fillGenericScreen});
}

void ReportInitFailed(Session& session, TimerModel& keepAlive)
{
    session.LinkDown = true;
    session.screen.StatusBar1.setText(1, kInitFailed);
    keepAlive.setInterval(session.settings.KeepAlive);
    keepAlive.setEnabled(false);
    SetToolbarConnected(session, false);
}

void RefuseConnection(Session& session, const std::string& text)
{
    Disconnect(session);
    session.shell.messageBox(kFailedCommunication, text, MessageIcon::Exclamation);
}

std::string SendRequest(Session& session, const std::string& headerByte1, const std::string& headerByte2,
                        const std::string& service, const std::string& parameter,
                        const std::string& decoderService)
{
    if (session.LinkDown)
        return {};
    const std::string reply = RequestCycle(session, link::genericRequest(headerByte1, headerByte2, service, parameter));
    for (const std::string& message : link::splitReply(reply))
        DecodeSupportedPids(session, message, decoderService);
    return reply;
}

bool IsKwp(int protocol)
{
    return protocol == link::Kwp2000Slow || protocol == link::Kwp2000Fast;
}

bool ReconnectEcu(Session& session)
{
    const CommSettings& s = session.settings;
    std::string result;
    return session.link.InitializeEcu("33", s.BaudRate, s.PortNumber, s.ProtocolNumber, "", true, result);
}

void SetToolbarConnected(Session& session, bool connected)
{
    MainScreen& screen = session.screen;
    screen.control("Connect").setEnabled(!connected);
    screen.control("Disconnect").setEnabled(connected);
    // A manufacturer session holds its settings for as long as it stands.
    screen.control("Setting").setEnabled(!connected || session.ModuleIndex == ModuleGeneric);
    for (const char* startOrStop : {"cmdRequestMode1", "cmdStop", "cmdRequestLiveCombo", "cmdStopLiveCombo"})
        screen.control(startOrStop).setEnabled(connected);
    // The diagnostic services speak only to a unit opened by the generic module.
    const bool generic = connected && session.ModuleIndex == ModuleGeneric;
    for (const char* service : {"cmdRequestMode2", "cmdMode3", "cmdMode7", "cmdMode4", "cmdRequestMode5",
                                "cmdRequestMode6", "cmdModeOnce", "cmdReadVin"})
        screen.control(service).setEnabled(generic);
}

} // namespace kvx::obd
