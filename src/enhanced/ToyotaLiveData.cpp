#include "enhanced/ToyotaLiveData.h"

#include "data/GridLayouts.h"
#include "data/ItemRows.h"
#include "enhanced/SensorRows.h"
#include "link/ReplyText.h"
#include "log/LogFile.h"
#include "obd/FrameText.h"
#include "obd/KeepAlive.h"
#include "obd/LiveCombo.h"
#include "obd/LiveLoop.h"
#include "obd/RequestCycle.h"
#include "session/MainScreen.h"
#include "session/Session.h"

#include <set>

namespace kvx::enhanced {

namespace {

// A row's label "PPaa b": the parameter, the data byte a sub-value starts at, and b.
constexpr std::size_t kLabelLength = 6;

std::string valueText(const Session& session, const std::string& label, const std::string& message, int kind)
{
    return data::ToyotaRowValue(session.toyotaDecoder, label, message, kind);
}

// One reply serves every row of its parameter, whichever row asked.
void showReply(Session& session, const std::string& polledLabel, const std::string& reply)
{
    GridModel& grid = session.screen.GridMode1;
    const std::string pid = polledLabel.substr(0, 2);
    for (const std::string& message : obd::EcuMessages(session, reply)) {
        log::WriteLogFrame(session, message + " " + polledLabel);
        for (int row = 1; row < grid.rows(); ++row) {
            const std::string& label = grid.text(row, data::PidColumn);
            if (label.rfind(pid, 0) != 0)
                continue;
            grid.setText(row, data::ValueColumn, valueText(session, label, message, 1));
            grid.setText(row, data::AltValueColumn, valueText(session, label, message, 2));
        }
    }
}

const obd::ComboReading& toyotaComboReading()
{
    static const obd::ComboReading reading{
        [](const Session& session, const std::string& choice, const std::string& frame, int kind) {
            return valueText(session, choice.substr(0, kLabelLength), frame, kind);
        },
        [](const std::string& choice, const std::string& frame) { return frame + " " + choice.substr(0, kLabelLength); }};
    return reading;
}

} // namespace

void RunToyotaLiveData(Session& session)
{
    obd::RunLivePasses(session, session.screen.tmrKeepAlive, obd::RestartKeepAlive,
                       [&] { return PollToyotaLiveData(session, session.HeaderByte1, session.HeaderByte2); });
}

bool PollToyotaLiveData(Session& session, const std::string& headerByte1, const std::string& headerByte2)
{
    std::set<std::string> asked;
    const auto highlight = [&](int row) { HighlightPolledRow(session, row); };
    return obd::WalkLiveRows(session, highlight, [&](int row) {
        const std::string label = session.screen.GridMode1.text(row, data::PidColumn);
        const std::string pid = label.substr(0, 2);
        if (!asked.insert(pid).second)
            return true;
        const std::string reply = obd::RequestCycle(session, link::genericRequest(headerByte1, headerByte2, "01", pid),
                                                    session.ToyotaLastFrame, session.ToyotaLastRaw,
                                                    session.ToyotaLastResponse);
        if (obd::CountLiveSilence(session, reply, [&] { obd::ReconnectAfterSilence(session); })) {
            obd::DropSilentSession(session);
            return false;
        }
        showReply(session, label, reply);
        return true;
    });
}

void RunToyotaLiveCombo(Session& session)
{
    obd::RunLiveCombo(session, toyotaComboReading());
}

} // namespace kvx::enhanced
