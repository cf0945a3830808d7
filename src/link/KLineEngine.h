#pragma once

#include "link/ByteLink.h"
#include "link/EnginePort.h"
#include "link/Framing.h"
#include "link/LinkEngine.h"
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

// The K-line stack under LinkSession: the port, the wake-ups, the request and reply timing.
class KLineEngine final : public LinkEngine {
public:
    KLineEngine(WireFactory& wires, Clock& clock);
    ~KLineEngine() override;

    WakeUpResult wakeUp(const WakeUpRequest& request) override;
    int protocolInUse() const override { return protocol_; }
    bool searchesProtocols() const override { return false; }
    Bytes encode(const Bytes& request) const override;
    // Sends a frame after P3 and returns the units' reply frames (P2max of silence ends them).
    std::vector<Bytes> transact(const Bytes& frame) override;
    // Replies to bodies take the header form without addresses whatever header the unit chose.
    Bytes replyForm(const Bytes& frame) const override;
    bool bodySession() const override { return bodyAddresses_.has_value(); }

    bool portOpen() const override;
    void closePort() override;

    void setP3(int msValue) override { p3Ms_ = msValue; }
    int p3() const override { return p3Ms_; }
    void setP4(int msValue) override;
    void setInterByte(int msValue) override;
    void setKwpInitDelay(const std::string& msText) override;
    Micros p4() const { return p4_; }
    Micros w4() const { return w4_; }
    Micros kwpHighAfterLow() const { return kwpHigh_; }

    void setIdleHook(std::function<void()> hook) override { idle_ = std::move(hook); }
    void setTrace(TraceSink* trace) override { trace_ = trace; }
    int badChecksums() const { return badChecksums_; }

private:
    WakeUpResult wakeUpOnPort(const WakeUpRequest& request);
    void openPort(int port, bool reconnect);
    void idleUntil(Micros t);
    void dropSession();
    LineKind kindFor(const Bytes& request) const;
    ReplyAddressing replyAddressing(const Bytes& frame) const;

    EnginePort port_; // before io_, which reads and writes its wire
    Clock& clock_;
    TraceSink* trace_ = nullptr;
    std::function<void()> idle_;
    std::unique_ptr<ByteLink> io_;
    Micros lastActivity_ = 0;

    int p3Ms_ = 300;
    Micros p4_ = ms(20);
    Micros w4_ = ms(35);
    Micros kwpHigh_ = ms(25);

    // The session the last successful wake-up opened.
    std::optional<LineKind> kind_;
    int protocol_ = 0;
    HeaderForm form_;
    std::optional<std::pair<std::uint8_t, std::uint8_t>> bodyAddresses_; // target, source
    int badChecksums_ = 0;
};

} // namespace kvx::link
