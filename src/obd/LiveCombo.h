#pragma once

namespace kvx {
struct Session;
}

namespace kvx::obd {

constexpr const char* kComboCaption = "LIVE DATA COMBO";

// cmdRequestLiveCombo: polls the five cmbPid slots while the combo tab is shown, until
// cmdStopLiveCombo, a tab change, a lost session or six silent replies in a row.
void StartLiveCombo(Session& session);

// One pass over the five slots. False when the unit stayed silent and polling must end.
bool PollLiveCombo(Session& session);

// cmdStopLiveCombo: the running pass ends at its next slot.
void StopLiveCombo(Session& session);

} // namespace kvx::obd
