#pragma once

namespace kvx {
struct Session;
}

namespace kvx::enhanced {

// cmdRequestMode1 for the Nissan units: passes over the ticked rows while "LIVE DATA" is shown,
// Busy is set and the link is up; tmrKeepAliveEnhance runs only between passes.
void RunNissanLiveData(Session& session);

// One pass over GridMode1. False when six silent replies in a row ended the session.
bool PollNissanLiveData(Session& session);

} // namespace kvx::enhanced
