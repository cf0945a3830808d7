#pragma once

#include "link/ByteLink.h"
#include "link/Framing.h"
#include "link/Protocol.h"
#include "link/ProtocolBytes.h"
#include "link/WakeUp.h"
#include "link/Wire.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kvx::link {

struct WakeUpRequest {
    std::uint8_t address = kline::kObdAddress;
    int baud = 10400;
    int port = 1;
    Protocol protocol = Iso9141Slow; // one of the three; TryAll is the caller's loop
    Bytes startFrame; // KWP fast init only; empty for the functional StartCommunication
    bool reconnect = false;
};

// The K-line stack under LinkSession: the port, the wake-ups, the request and reply timing.
class KLineEngine {
public:
    KLineEngine(WireFactory& wires, Clock& clock);
    ~KLineEngine();

    WakeUpResult wakeUp(const WakeUpRequest& request);
    Bytes encode(const Bytes& request) const;
    // Sends a frame after P3 and returns the units' reply frames (P2max of silence ends them).
    std::vector<Bytes> transact(const Bytes& frame);
    // The raw form of one reply frame: the whole frame as it arrived, or, when requests are bodies,
    // the frame in the header form without addresses (length byte, payload, checksum), so that
    // the service always sits right after the length whatever header the unit chose.
    Bytes replyForm(const Bytes& frame) const;
    bool bodySession() const { return bodyAddresses_.has_value(); }

    bool portOpen() const;
    void closePort();

    void setP3(int msValue) { p3Ms_ = msValue; }
    int p3() const { return p3Ms_; }
    void setP4(int msValue);
    void setInterByte(int msValue);
    void setKwpInitDelay(const std::string& msText);
    Micros p4() const { return p4_; }
    Micros w4() const { return w4_; }
    Micros kwpHighAfterLow() const { return kwpHigh_; }

    void setIdleHook(std::function<void()> hook) { idle_ = std::move(hook); }
    void setTrace(TraceSink* trace) { trace_ = trace; }
    int badChecksums() const { return badChecksums_; }

private:
    class Busy;
    WakeUpResult wakeUpOnPort(const WakeUpRequest& request);
    void openPort(int port, bool reconnect);
    void idleUntil(Micros t);
    void closeNow();
    LineKind kindFor(const Bytes& request) const;
    ReplyAddressing replyAddressing(const Bytes& frame) const;

    WireFactory& wires_;
    Clock& clock_;
    TraceSink* trace_ = nullptr;
    std::function<void()> idle_;
    std::unique_ptr<Wire> wire_;
    std::unique_ptr<ByteLink> io_;
    int port_ = -1;
    Micros lastActivity_ = 0;
    bool busy_ = false;
    bool closePending_ = false;

    int p3Ms_ = 300;
    Micros p4_ = ms(20);
    Micros w4_ = ms(35);
    Micros kwpHigh_ = ms(25);

    // The session the last successful wake-up opened.
    std::optional<LineKind> kind_;
    HeaderForm form_;
    std::optional<std::pair<std::uint8_t, std::uint8_t>> bodyAddresses_; // target, source
    int badChecksums_ = 0;
};

} // namespace kvx::link
