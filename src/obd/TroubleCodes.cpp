#include "obd/TroubleCodes.h"

#include "data/DtcDescriptions.h"
#include "link/LinkSession.h"
#include "link/ReplyText.h"
#include "obd/FrameText.h"
#include "obd/RequestCycle.h"
#include "obd/ServiceCycle.h"
#include "obd/TextColumns.h"
#include "obd/TroubleCodeLines.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

#include <stdexcept>

namespace kvx::obd {

namespace {

constexpr int kTroubleCodeWait = 1500; // codes may come in several frames; give the unit time

std::string SelectedText(const RichTextModel& box)
{
    return box.text().substr(box.caret(), box.selectionLength());
}

void RunRead(Session& session, const char* service)
{
    if (!GenericServiceAllowed(session))
        return;
    {
        KeepAlivePause pause(session);
        session.screen.txtMode347.clear();
        session.shell.processEvents();
        P3Override slow(session, kTroubleCodeWait);
        ReadTroubleCodes(session, session.HeaderByte1, session.HeaderByte2, service);
    }
    session.screen.StatusBar1.setText(1, "");
}

} // namespace

void RequestStoredCodes(Session& session)
{
    RunRead(session, "03");
}

void RequestPendingCodes(Session& session)
{
    RunRead(session, "07");
}

void RequestClearCodes(Session& session)
{
    if (!GenericServiceAllowed(session))
        return;
    {
        KeepAlivePause pause(session);
        session.screen.txtMode347.clear();
        session.shell.processEvents();
        ClearTroubleCodes(session, session.HeaderByte1, session.HeaderByte2, "04");
    }
    session.screen.StatusBar1.setText(1, "");
}

void ReadTroubleCodes(Session& session, const std::string& headerByte1, const std::string& headerByte2,
                      const std::string& service)
{
    if (session.LinkDown)
        return;
    const std::string reply = RequestCycle(session, link::genericRequest(headerByte1, headerByte2, service));
    auto& box = session.screen.txtMode347;
    session.screen.StatusBar1.setText(3, "");

    TroubleCodeListing listing([&session](const std::string& code) {
        try {
            return data::DtcDescription(session.DtcDescriptions, code);
        } catch (const std::invalid_argument&) {
            if (!session.CodesWithoutNumberListed)
                throw;
            return std::string();
        }
    });
    for (const auto& frame : link::splitReply(reply)) {
        session.shell.processEvents();
        if (FromEcu(session, frame))
            box.insertAtCaret(SelectedText(box) + listing.addFrame(session.link.FormatTroubleCode(frame, 1)));
    }
    if (listing.lastFrameEmpty())
        box.insertAtCaret("No Response From ECU");
}

void ClearTroubleCodes(Session& session, const std::string& headerByte1, const std::string& headerByte2,
                       const std::string& service)
{
    if (session.LinkDown)
        return;
    session.screen.StatusBar1.setText(3, "");
    const std::string reply = RequestCycle(session, link::genericRequest(headerByte1, headerByte2, service));
    session.screen.StatusBar1.setText(3, "");

    auto& box = session.screen.txtMode347;
    for (const auto& frame : link::splitReply(reply)) {
        session.shell.processEvents();
        if (FromEcu(session, frame)) {
            box.insertAtCaret(session.link.FormatServiceReply(frame) + kLineBreak);
            return;
        }
    }
    box.insertAtCaret("No Response From ECU");
}

} // namespace kvx::obd
