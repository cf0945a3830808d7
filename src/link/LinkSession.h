#pragma once

#include "link/Clock.h"
#include "link/Protocol.h"
#include "link/Wire.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kvx::link {

class Elm327Engine;
class KLineEngine;
class LinkEngine;
class TraceSink;

// Seconds as a fixed-point number with four decimals (ten-thousandths of a second).
using FixedSeconds = std::int64_t;

// Texts of one mode 06 result row.
struct MonitorTestTexts {
    std::string tid;        // two hex digits
    std::string component;  // component number, two hex digits, limit-type bit removed
    std::string limitType;  // "Minimum" or "Maximum"
    int typeCode = 0;       // 4 for a minimum, 3 for a maximum
    std::string limit;      // scaled limit text
    std::string result;     // scaled test value text
    std::string passFail;   // "PASS" or "FAIL"
    std::string description; // the standard name of the test, where one exists (CAN results)
};

// The one object through which all vehicle traffic passes: wake-up, framing, timing, and the
// turning of reply messages into display text. Requests and replies are hex text.
class LinkSession {
public:
    LinkSession(WireFactory wires, Clock& clock);
    ~LinkSession();
    LinkSession(const LinkSession&) = delete;
    LinkSession& operator=(const LinkSession&) = delete;

    // Session. A silent unit gives false / an empty text; a failing port or cable throws LinkError.
    bool InitializeEcu(const std::string& wakeAddress, int baudRate, int portNumber, int protocol,
                       const std::string& startFrame, bool reconnect, std::string& result);
    std::string EncodeRequest(const std::string& request);
    std::string Transact(const std::string& frame);
    std::string DecodeReply(const std::string& raw);
    std::string ComputeChecksum(const std::string& hex) const;
    bool IsPortOpen() const;
    void ClosePort(int reserved);

    // Which engine drives the port: the K-line cable (the default) or an ELM327, at the adapter's
    // serial rate (0: try the usual rates). A change closes the port the other engine held.
    void SetInterface(InterfaceType type, int adapterBaud);
    // True when the engine searches the protocols itself: "Try All" is then one wake-up with
    // protocol 4, and ProtocolInUse says what was found.
    bool SearchesProtocols() const;
    // The protocol the last successful wake-up opened; 0 when none is open.
    int ProtocolInUse() const;

    // Settings.
    void SetP3Delay(int ms);
    int GetP3Delay() const;
    void SetP4Delay(int ms);
    void SetInterByteDelay(int ms);
    void SetKwp2000InitDelay(const std::string& ms);

    // Stopwatch for the log player's pacing.
    void StartStopwatch();
    void LapStopwatch();
    FixedSeconds ReadStopwatch() const;

    // Decoding of generic service replies (one message each).
    std::string FormatLiveValue(const std::string& message, int selector) const;
    std::string DescribePid(const std::string& pid, const std::string& o2Layout = {}) const;
    std::string FormatFreezeFrameValue(const std::string& message, int selector) const;
    std::string FormatTroubleCode(const std::string& message, int count) const;
    // selector 1 = test value, 2 = minimum limit, 3 = maximum limit
    std::string FormatOxygenTest(const std::string& message, int selector) const;
    MonitorTestTexts FormatMonitorTest(const std::string& message) const;
    // The rows of a mode 06 message: one for the older K-line form, one per limit (minimum, then
    // maximum) for the form with a unit-and-scaling ID that CAN units send.
    std::vector<MonitorTestTexts> FormatMonitorTestRows(const std::string& message) const;
    std::string FormatServiceReply(const std::string& message) const;
    // Readable text of an information parameter (01, 13, 1C, 1D, ...).
    std::string FormatInfoValue(const std::string& message) const;
    // Vehicle identification number from all messages of a service 09 reply ("" when none).
    std::string FormatVin(const std::string& reply) const;

    // Long waits (P3, W1, W5) call this so a window can process its events; byte waits never do.
    void setIdleHook(std::function<void()> hook);
    // Every byte and init timing goes here when set (kvx --trace).
    void setTraceSink(TraceSink* sink);
    Clock& clock() const { return clock_; }

private:
    WireFactory wires_;
    Clock& clock_;
    std::unique_ptr<KLineEngine> kline_;
    std::unique_ptr<Elm327Engine> elm_;
    LinkEngine* engine_;
    Micros stopwatchStart_ = 0;
    Micros stopwatchLap_ = 0;
};

} // namespace kvx::link
