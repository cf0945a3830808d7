#pragma once

#include "link/Clock.h"
#include "link/Framing.h"
#include "link/Trace.h"
#include "link/Wire.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>

namespace kvx::link {

// Bytes on the K-line as a dumb interface gives them: everything sent comes back as an echo, which
// is read and compared before the next byte goes out; the units' bytes are received with the time
// they reached the tester. Every byte and edge goes to the trace.
class ByteLink {
public:
    ByteLink(Wire& wire, Clock& clock, TraceSink* trace, int baud);

    // Sends one byte and checks its echo; throws LinkError NoEcho or Collision.
    void send(std::uint8_t byte);
    // Sends a frame, pausing gap after each echo before the next byte.
    void sendFrame(const Bytes& frame, Micros gap);
    // The next unit byte, or nullopt once the deadline has passed.
    std::optional<TimedByte> receive(Micros deadline);
    // The same for the long waits (W1, P2* after a response pending): idle runs before every
    // slice of at most 10 ms. Bytes that come meanwhile wait in the port's buffer and are read a
    // little late, which cannot cut a reply short.
    std::optional<TimedByte> receiveIdling(Micros deadline, const std::function<void()>& idle);
    // Throws away whatever has arrived; stray bytes are traced as dropped.
    void discardInput(const char* why);
    // Pulls the line low or releases it; returns the time of the edge (the middle of the call).
    Micros setLineLow(bool low);
    // How long the last break call took, to start the next one early by half of it.
    Micros breakCallTime() const { return breakCall_; }

    Micros byteTime() const { return byteTime_; }
    // When the last byte was seen on the line (sent, echoed or received).
    Micros lastActivity() const { return lastActivity_; }
    void touch(Micros t) { lastActivity_ = t; }

private:
    bool fill(Micros deadline);

    Wire& wire_;
    Clock& clock_;
    TraceSink* trace_;
    Micros byteTime_;
    Micros breakCall_ = 0;
    Micros lastActivity_ = 0;
    Micros byteEnd_ = 0;
    std::deque<TimedByte> input_;
};

} // namespace kvx::link
