#pragma once

#include "link/Clock.h"
#include "link/Hex.h"
#include "link/Trace.h"
#include "sim/FaultPlan.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <utility>
#include <vector>

namespace kvx::sim {

struct BusEvent {
    enum class Kind { BreakOn, BreakOff, Byte };
    link::Micros time = 0; // edges: when the line changed; bytes: the end of the stop bit
    Kind kind = Kind::Byte;
    link::TraceOrigin origin = link::TraceOrigin::Tester;
    std::uint8_t byte = 0;
};

// What the vehicle made of the tester's wake-up, with the times it measured.
struct InitObservation {
    enum class Kind { FiveBaud, FastInit };
    Kind kind = Kind::FiveBaud;
    link::Micros lowEdge = 0;           // the falling edge that began the wake-up
    link::Micros idleBefore = -1;       // quiet line before lowEdge since the last byte; -1 if none
    std::vector<link::Micros> bitEdges; // 5-baud: every edge after the start edge
    link::Micros worstBitError = 0;     // 5-baud: largest distance of an edge from its 200 ms grid
    int address = -1;                   // 5-baud: the decoded address, -1 when not decodable
    link::Micros lowWidth = 0;          // fast init: how long the line was held low
    link::Micros firstByteAfterLow = -1; // fast init: start of StartCommunication after the low edge
    bool accepted = false;
    std::string note;                   // why a wake-up was refused, in plain words
};

// A tester request the units heard inside a session, and the fault the plan gave it.
struct RequestObservation {
    link::Micros time = 0; // the start of its first byte
    Fault fault = Fault::None;
};

// The newest entries of one kind, at most `limit` of them, and a count of the older ones let go:
// a vehicle served for hours keeps a record of bounded size.
template <typename T>
class RecentWindow {
public:
    explicit RecentWindow(std::size_t limit) : limit_(limit) {}

    void push_back(T item)
    {
        items_.push_back(std::move(item));
        if (items_.size() > limit_) {
            items_.pop_front();
            ++dropped_;
        }
    }
    std::size_t size() const { return items_.size(); }
    bool empty() const { return items_.empty(); }
    const T& operator[](std::size_t i) const { return items_[i]; }
    const T& at(std::size_t i) const { return items_.at(i); }
    const T& back() const { return items_.back(); }
    T& back() { return items_.back(); }
    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }
    auto rbegin() const { return items_.rbegin(); }
    auto rend() const { return items_.rend(); }

    std::size_t dropped() const { return dropped_; }
    // How many were ever recorded; the n-th of them (from 0), while it is still kept.
    std::size_t total() const { return dropped_ + items_.size(); }
    const T& number(std::size_t n) const { return items_.at(n - dropped_); }

private:
    std::deque<T> items_;
    std::size_t limit_;
    std::size_t dropped_ = 0;
};

// The bus's own account of what happened on it lately, for measuring timing windows.
struct BusRecord {
    static constexpr std::size_t kEventsKept = 1 << 16;
    static constexpr std::size_t kOthersKept = 1 << 12;

    RecentWindow<BusEvent> events{kEventsKept};
    RecentWindow<InitObservation> inits{kOthersKept};
    RecentWindow<link::Micros> sessionDrops{kOthersKept}; // when a unit gave its session up after P3max
    RecentWindow<RequestObservation> requests{kOthersKept};
    // Every frame a unit put on the line, as it was sent (stray bytes of line noise are none).
    RecentWindow<link::Bytes> framesSent{kOthersKept};

    std::vector<BusEvent> bytes(link::TraceOrigin origin) const;
    std::vector<BusEvent> edges() const;
};

} // namespace kvx::sim
