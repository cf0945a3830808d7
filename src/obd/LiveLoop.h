#pragma once

#include <functional>
#include <string>

namespace kvx {
struct Session;
class TimerModel;
}

namespace kvx::obd {

// Counts one live-data reply: a reply zeroes SilenceCount and clears panel 1, an empty one adds
// one. From the third silent reply in a row each further one runs wakeUp first; true at the
// sixth, when polling must end.
bool CountLiveSilence(Session& session, const std::string& reply, const std::function<void()>& wakeUp);

// One pass of a grid poller over GridMode1's rows while Busy is set and the link is up. A change
// of tab clears Busy and ends the pass. visit(row) runs for every row, poll(row) for the ticked
// ones only, and events are processed after each row. False when poll ended polling.
bool WalkLiveRows(Session& session, const std::function<void(int)>& visit, const std::function<bool(int)>& poll);

// The loop of a grid poller: passes while "LIVE DATA" is the selected tab, Busy is set and the
// link is up, with the module's keep-alive timer off during each pass and re-armed after it, and
// events processed between passes. A pass returns false to end the loop. Busy is clear when it
// returns, however it ends.
void RunLivePasses(Session& session, TimerModel& keepAlive, void (*rearm)(Session&),
                   const std::function<bool()>& pass);

} // namespace kvx::obd
