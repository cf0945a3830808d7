#pragma once

#include <cstdint>

namespace kvx::link {

// Monotonic time in microseconds. Every timing decision of the link goes through a Clock so
// that tests can run a day of traffic in virtual time.
using Micros = std::int64_t;

constexpr Micros ms(std::int64_t v) { return v * 1000; }

class Clock {
public:
    virtual ~Clock() = default;
    virtual Micros now() const = 0;
    // Returns once now() >= t. A time in the past returns at once.
    virtual void sleepUntil(Micros t) = 0;
    void sleepFor(Micros d) { sleepUntil(now() + d); }
};

// The operating system's monotonic clock; sleeping really sleeps.
class SteadyClock final : public Clock {
public:
    Micros now() const override;
    void sleepUntil(Micros t) override;
};

// Virtual time: sleeping moves time forward at once, so runs are fast and repeatable.
class VirtualClock final : public Clock {
public:
    explicit VirtualClock(Micros start = 0) : now_(start) {}
    Micros now() const override { return now_; }
    void sleepUntil(Micros t) override
    {
        if (t > now_)
            now_ = t;
    }

private:
    Micros now_;
};

} // namespace kvx::link
