#pragma once

namespace kvx {
struct Session;
}

namespace kvx::enhanced {

// The selection window's choice: sets ModuleIndex and runs that module's connection routine.
// True when connected; an index outside 0-3 connects nothing.
bool ConnectModule(Session& session, int moduleIndex);

// cmdRequestMode1 / cmdRequestLiveCombo for whichever module is connected.
void StartModuleLiveData(Session& session);
void StartModuleLiveCombo(Session& session);

// One pass of the connected module's live data (kvx prints between passes). False when the unit
// stayed silent and the session has ended.
bool PollModuleLiveData(Session& session);

} // namespace kvx::enhanced
