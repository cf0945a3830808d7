#include "log/LinkReplay.h"

#include "log/EnhancedReplay.h"
#include "log/LogFormat.h"
#include "session/MainScreen.h"
#include "session/Session.h"

namespace kvx::log {

void LinkStopwatch::StartStopwatch()
{
    link_.StartStopwatch();
}

void LinkStopwatch::LapStopwatch()
{
    link_.LapStopwatch();
}

link::FixedSeconds LinkStopwatch::ReadStopwatch() const
{
    return link_.ReadStopwatch();
}

void LinkStopwatch::sleepFor(link::Micros duration)
{
    link_.clock().sleepFor(duration);
}

LiveDecoding LinkLiveDecoding(const link::LinkSession& link)
{
    return {[&link](const std::string& message, int selector) { return link.FormatLiveValue(message, selector); },
            [&link](const std::string& pid) { return link.DescribePid(pid); }};
}

FrameHandlers SessionFrameHandlers(Session& session)
{
    GridModel& grid = session.screen.GridMode1;
    return {{kGenericHeader, GenericFrameHandler(grid, LinkLiveDecoding(session.link))},
            {kNissanEcuHeader, NissanFrameHandler(grid, session.nissanDecoder, [&session] { return session.ModuleIndex; })},
            {kToyotaHeader, ToyotaFrameHandler(grid, session.toyotaDecoder)}};
}

} // namespace kvx::log
