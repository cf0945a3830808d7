#include "obd/O2SensorList.h"

#include "link/ReplyText.h"
#include "link/decode/PidWords.h"
#include "obd/FrameText.h"
#include "obd/RequestCycle.h"
#include "session/MainScreen.h"
#include "session/Session.h"

#include <optional>

namespace kvx::obd {

namespace {

constexpr int kAllPresent = 0xFF;

// Data byte A of the engine unit's answer to "01" + pid, if it gave one.
std::optional<int> AskLayoutByte(Session& session, const std::string& pid)
{
    const std::string reply =
        RequestCycle(session, link::genericRequest(session.HeaderByte1, session.HeaderByte2, "01", pid));
    for (const auto& frame : EcuMessages(session, reply)) {
        const auto m = link::readMessage(frame);
        if (m && m->service == 0x41 && m->data.size() >= 2 && link::toHex(m->data[0]) == pid)
            return m->data[1];
    }
    return std::nullopt;
}

} // namespace

std::vector<std::string> PresentO2Sensors(int layoutByte, bool fourBanks)
{
    std::vector<std::string> names;
    for (int bit = 0; bit < 8; ++bit)
        if (layoutByte & (1 << bit))
            names.push_back(link::decode::sensorPosition(bit, fourBanks));
    return names;
}

void FillO2SensorList(Session& session)
{
    const bool fourBanks = session.SupportedPids[0x1D][0];
    const bool declared = fourBanks || session.SupportedPids[0x13][0];
    int layout = kAllPresent;
    if (declared && !session.LinkDown) {
        // A unit that names no sensor at all is listed in full rather than left with none.
        const std::optional<int> present = AskLayoutByte(session, fourBanks ? "1D" : "13");
        if (present && *present != 0)
            layout = *present;
    }
    ListModel& list = session.screen.cmbMode5;
    list.clear();
    for (const std::string& name : PresentO2Sensors(layout, fourBanks))
        list.addItem(name);
    list.setCurrentIndex(0);
}

} // namespace kvx::obd
