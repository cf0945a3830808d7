#include "link/Clock.h"

#include <chrono>
#include <thread>

namespace kvx::link {

Micros SteadyClock::now() const
{
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}

void SteadyClock::sleepUntil(Micros t)
{
    using namespace std::chrono;
    std::this_thread::sleep_until(steady_clock::time_point(microseconds(t)));
}

} // namespace kvx::link
