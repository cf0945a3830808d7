#pragma once

#include "link/ElmDialogue.h"
#include "link/EnginePort.h"
#include "link/Framing.h"
#include "link/LinkEngine.h"
#include "link/Wire.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace kvx::link {

// The adapter rates tried, in this order, when the settings leave the rate to be found.
inline constexpr int kElmBauds[] = {38400, 9600, 115200, 500000};
inline constexpr int kElmDefaultBaud = 38400;
// The settings' adapter rate that asks for the rates above to be tried.
inline constexpr int kElmAutoBaud = 0;

// Drives an ELM327 adapter over the serial wire: the adapter times the K-line or the CAN bus itself
// and we speak its AT dialect. Answers come back in the K-line engine's form: K-line frames as
// they are, CAN answers normalised into frames with the K-line header and a checksum.
class Elm327Engine final : public LinkEngine {
public:
    Elm327Engine(WireFactory& wires, Clock& clock);
    ~Elm327Engine() override;

    // The adapter's serial rate; kElmAutoBaud tries kElmBauds in turn at the next opening.
    void setAdapterBaud(int baud) { adapterBaud_ = baud; }
    // The rate the open adapter answered at (0 while closed).
    int adapterBaudInUse() const { return baudInUse_; }

    WakeUpResult wakeUp(const WakeUpRequest& request) override;
    int protocolInUse() const override { return protocol_; }
    bool searchesProtocols() const override { return true; }
    Bytes encode(const Bytes& request) const override;
    std::vector<Bytes> transact(const Bytes& frame) override;
    Bytes replyForm(const Bytes& frame) const override;
    bool bodySession() const override { return bodyAddresses_.has_value(); }

    bool portOpen() const override;
    void closePort() override;

    // The adapter paces the line itself; P3 is kept for the callers that read it back.
    void setP3(int msValue) override { p3Ms_ = msValue; }
    int p3() const override { return p3Ms_; }
    void setP4(int) override {}
    void setInterByte(int) override {}
    void setKwpInitDelay(const std::string&) override {}

    void setIdleHook(std::function<void()> hook) override;
    void setTrace(TraceSink* trace) override;

private:
    WakeUpResult wakeUpOnAdapter(const WakeUpRequest& request);
    void openAdapter(int port);
    int findBaud();
    void setUp();
    std::optional<std::vector<std::string>> greet(const std::string& command, Micros timeout);
    void expectOk(const std::string& command);
    void setHeader(const std::string& header);
    std::string headerFor(const Bytes& frame) const;
    bool probe(const std::string& request, Micros timeout);
    int searchedProtocol();
    void note(const std::string& text) const;
    void dropSession();

    EnginePort port_; // before dialogue_, which talks over its wire
    Clock& clock_;
    TraceSink* trace_ = nullptr;
    std::function<void()> idle_;
    std::unique_ptr<ElmDialogue> dialogue_;
    int adapterBaud_ = kElmDefaultBaud;
    int baudInUse_ = 0;
    int p3Ms_ = 300;

    // The session the last successful wake-up opened.
    int protocol_ = 0;
    std::string header_; // as last set with ATSH
    std::optional<std::pair<std::uint8_t, std::uint8_t>> bodyAddresses_; // target, source
};

} // namespace kvx::link
