#include "obd/InfoPids.h"

#include "link/LinkSession.h"
#include "link/ReplyText.h"
#include "obd/FrameText.h"
#include "obd/RequestCycle.h"
#include "obd/ServiceCycle.h"
#include "obd/TextColumns.h"
#include "obd/SupportDiscovery.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

#include <array>
#include <stdexcept>

namespace kvx::obd {

namespace {

constexpr std::array<const char*, 5> kButtonPids{{"1C", "01", "", "13", "1D"}};
constexpr int kVinService = 9;
constexpr int kVinInfoType = 2;

int HexNumber(const std::string& text)
{
    std::size_t used = 0;
    const int value = std::stoi(text, &used, 16);
    if (used != text.size())
        throw std::invalid_argument("not a hex number: " + text);
    return value;
}

// The first frame of the engine unit, or "" when none answered.
std::string EcuFrame(const Session& session, const std::string& reply)
{
    const std::vector<std::string> messages = EcuMessages(session, reply);
    return messages.empty() ? std::string() : messages.front();
}

} // namespace

std::string InfoPidOfButton(int index)
{
    if (index < 0 || index >= static_cast<int>(kButtonPids.size()))
        return {};
    return kButtonPids[static_cast<std::size_t>(index)];
}

void ClickModeOnce(Session& session, int index)
{
    if (!GenericServiceAllowed(session))
        return;
    const std::string pid = InfoPidOfButton(index);
    if (pid.empty())
        return;
    KeepAlivePause pause(session);
    session.screen.txtInfo.clear();
    session.shell.processEvents();
    RequestInfoPid(session, session.HeaderByte1, session.HeaderByte2, "01", pid);
}

void RequestInfoPid(Session& session, const std::string& headerByte1, const std::string& headerByte2,
                    const std::string& service, const std::string& pid)
{
    if (session.LinkDown)
        return;
    session.screen.StatusBar1.setText(3, "");
    const int pidNumber = HexNumber(pid);
    const int column = HexNumber(service) - 1;
    if (pidNumber < 0 || pidNumber >= Session::kPidRows || column < 0 || column >= Session::kPidCols)
        throw std::invalid_argument("no support entry for service " + service + " parameter " + pid);
    auto& box = session.screen.txtInfo;
    if (service == "01" &&
        !session.SupportedPids[static_cast<std::size_t>(pidNumber)][static_cast<std::size_t>(column)]) {
        box.setText("Not Supported");
        return;
    }
    const std::string frame = EcuFrame(session, RequestCycle(session, link::genericRequest(headerByte1, headerByte2, service, pid)));
    box.insertAtCaret(frame.empty() ? std::string("No Response From ECU") : session.link.FormatInfoValue(frame) + kLineBreak);
}

void ReadVehicleId(Session& session)
{
    if (!GenericServiceAllowed(session))
        return;
    KeepAlivePause pause(session);
    auto& box = session.screen.txtInfo;
    box.clear();
    if (!session.LinkDown) {
        session.screen.StatusBar1.setText(3, "");
        DiscoverSupport(session, kVinService, "", 0, 0x20);
        if (session.LastResponse.empty()) {
            box.insertAtCaret("No Response From ECU");
        } else if (!session.SupportedPids[kVinInfoType][kVinService - 1]) {
            box.setText("Not Supported");
        } else {
            // The number comes in several frames; only the engine unit's are put together.
            std::string ecuFrames;
            const std::string request = link::genericRequest(session.HeaderByte1, session.HeaderByte2, "09", "02");
            for (const auto& frame : EcuMessages(session, RequestCycle(session, request)))
                ecuFrames += (ecuFrames.empty() ? "" : ":") + frame;
            const std::string vin = session.link.FormatVin(ecuFrames);
            box.insertAtCaret(vin.empty() ? std::string("No Response From ECU") : "VIN: " + vin + kLineBreak);
        }
    }
}

} // namespace kvx::obd
