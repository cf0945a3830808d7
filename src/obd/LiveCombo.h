#pragma once

#include <functional>
#include <string>

namespace kvx {
struct Session;
}

namespace kvx::obd {

constexpr const char* kComboCaption = "LIVE DATA COMBO";

// How a module reads its combo slots. A slot's choice is a cmbPid entry; its first two
// characters are the parameter asked for.
struct ComboReading {
    // The display text of one accepted frame for the choice: kind 1 for lblPid, 2 for lblPida.
    std::function<std::string(const Session& session, const std::string& choice, const std::string& frame, int kind)>
        value;
    // The text the recorder keeps for an accepted frame.
    std::function<std::string(const std::string& choice, const std::string& frame)> logText;
};

// The generic module's reading: FormatLiveValue, the frame recorded as received.
const ComboReading& GenericComboReading();

// cmdRequestLiveCombo: polls the five cmbPid slots while the combo tab is shown, until
// cmdStopLiveCombo, a tab change, a lost session or six silent replies in a row.
void StartLiveCombo(Session& session);
// The same loop for any module, reading its slots its own way.
void RunLiveCombo(Session& session, const ComboReading& reading);

// One pass over the five slots. False when the unit stayed silent and polling must end.
bool PollLiveCombo(Session& session, const ComboReading& reading);

// cmdStopLiveCombo: the running pass ends at its next slot.
void StopLiveCombo(Session& session);

} // namespace kvx::obd
