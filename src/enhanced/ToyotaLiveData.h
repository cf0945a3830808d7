#pragma once

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::enhanced {

// cmdRequestMode1 for the Toyota unit: passes while "LIVE DATA" is shown, Busy is set and the
// link is up; tmrKeepAlive runs only between passes.
void RunToyotaLiveData(Session& session);

// One pass: one request per ticked parameter updates every row of that parameter. False when six
// silent replies in a row ended the session.
bool PollToyotaLiveData(Session& session, const std::string& headerByte1, const std::string& headerByte2);

// cmdRequestLiveCombo for the Toyota unit: the five cmbPid slots polled while "LIVE DATA COMBO"
// is shown, until cmdStopLiveCombo, a tab change, a lost session or six silent replies.
void RunToyotaLiveCombo(Session& session);

} // namespace kvx::enhanced
