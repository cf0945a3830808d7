#pragma once

#include "link/Clock.h"
#include "link/Protocol.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

namespace kvx::link {

// The physical layer under the K-line engine: a real serial port or the virtual vehicle.
// Failures of the port itself throw LinkError.
class Wire {
public:
    virtual ~Wire() = default;

    // What the user knows the wire by ("/dev/rfcomm0", "COM3"), for messages; empty when the
    // settings' port number names it well enough.
    virtual std::string name() const { return {}; }

    virtual void open() = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;

    // Sets the line rate exactly; refuses (throws) a rate the port cannot hold within 3 %.
    virtual void setBaud(int baud) = 0;
    // Holds the line low (on) or releases it (off); used for the 5-baud address and fast init.
    virtual void setBreak(bool on) = 0;

    virtual void write(std::span<const std::uint8_t> bytes) = 0;
    // Waits until at least one byte has arrived or the deadline (Clock time) has passed;
    // returns the number of bytes placed in buf (0 at the deadline).
    virtual std::size_t read(std::span<std::uint8_t> buf, Micros deadline) = 0;
    virtual void flushInput() = 0;
};

// Makes the wire for a settings port number (the caller decides what each number means), for the
// interface that will drive it: the virtual vehicle shows a cable the bus and an ELM327 engine an
// adapter in front of the same car.
using WireFactory = std::function<std::unique_ptr<Wire>(int port, InterfaceType interface)>;

} // namespace kvx::link
