#pragma once

#include "link/Hex.h"
#include "link/Protocol.h"
#include "link/ProtocolBytes.h"
#include "link/Trace.h"
#include "link/WakeUp.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kvx::link {

struct WakeUpRequest {
    std::uint8_t address = kline::kObdAddress;
    int baud = 10400;
    int port = 1;
    Protocol protocol = Iso9141Slow; // each engine refuses, in plain words, what it cannot open
    Bytes startFrame; // KWP fast init only; empty for the functional StartCommunication
    bool reconnect = false;
};

// What LinkSession asks of whatever drives the wire: a dumb K-line cable timed by us, or a smart
// adapter that times the line itself. Requests and replies are whole frames as bytes.
class LinkEngine {
public:
    virtual ~LinkEngine() = default;

    virtual WakeUpResult wakeUp(const WakeUpRequest& request) = 0;
    // The protocol number the last successful wake-up opened (the one found, after a search).
    virtual int protocolInUse() const = 0;
    // True when the engine can search the protocols itself, so "Try All" is one wake-up.
    virtual bool searchesProtocols() const = 0;
    virtual Bytes encode(const Bytes& request) const = 0;
    // Sends a frame and returns the units' reply messages, each a whole frame ending in its checksum.
    virtual std::vector<Bytes> transact(const Bytes& frame) = 0;
    // The raw form of one reply: the whole frame, or, when requests are bodies, the length byte,
    // payload and checksum, so that the service always sits right after the length.
    virtual Bytes replyForm(const Bytes& frame) const = 0;
    virtual bool bodySession() const = 0;

    virtual bool portOpen() const = 0;
    virtual void closePort() = 0;

    virtual void setP3(int msValue) = 0;
    virtual int p3() const = 0;
    virtual void setP4(int msValue) = 0;
    virtual void setInterByte(int msValue) = 0;
    virtual void setKwpInitDelay(const std::string& msText) = 0;

    virtual void setIdleHook(std::function<void()> hook) = 0;
    virtual void setTrace(TraceSink* trace) = 0;
};

} // namespace kvx::link
