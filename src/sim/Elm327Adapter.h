#pragma once

#include "link/Clock.h"
#include "link/Hex.h"
#include "link/Wire.h"
#include "sim/EcuModel.h"
#include "sim/VehicleConfig.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kvx::sim {

// The adapter's own pace, beside the units' P2 that it waits for.
struct ElmTiming {
    link::Micros command = link::ms(1);      // an AT command's answer
    link::Micros reset = link::ms(500);      // ATZ, before the version line
    link::Micros canFrame = 250;             // one eight-byte frame at 500 kbaud (twice that at 250)
    link::Micros testerGap = link::ms(5);    // between the request's bytes on the K-line (P4)
    link::Micros slowInit = link::ms(2600);  // a 5-baud address and the key-byte handshake
    link::Micros fastInit = link::ms(100);   // the wake-up pulse and StartCommunication
    link::Micros canProbe = link::ms(100);   // the search gives a CAN protocol this long
};

// An ELM327 adapter in front of the car's units: the other end of the serial line that the link's
// ELM327 engine (or any other ELM327 software on a pty) talks to. It speaks the adapter's AT
// dialect, wakes the K-line itself, reaches CAN cars, and answers after the units' P2 as a real
// adapter would, never at once. Passive like the K-line vehicle: it works out what happened from
// the clock whenever it is used.
class Elm327Adapter {
public:
    static constexpr int kBaud = 38400;

    explicit Elm327Adapter(link::Clock& clock, VehicleConfig config = {}, ElmTiming timing = {});
    ~Elm327Adapter();
    Elm327Adapter(const Elm327Adapter&) = delete;
    Elm327Adapter& operator=(const Elm327Adapter&) = delete;

    // A Wire onto the adapter's serial line. The adapter outlives it.
    std::unique_ptr<link::Wire> makeWire();
    link::Clock& clock() const { return clock_; }

    // The serial side. Bytes sent at another rate than the adapter's are lost.
    void setBaud(int baud) { lineBaud_ = baud; }
    void testerWrite(const link::Bytes& bytes);
    // What has reached the tester by now, oldest first; taken once.
    link::Bytes takeReceived();
    // When the next byte reaches the tester; nullopt when nothing is on its way.
    std::optional<link::Micros> nextEvent() const;

    // How long the adapter was engaged (a command's first byte in to its prompt out) and for how
    // many commands: a tester that sends each command the moment the prompt arrives reaches the
    // commands over that time, and no tester more.
    struct Load {
        long commands = 0;
        link::Micros busy = 0;
    };
    Load load() const { return load_; }

private:
    struct Line {
        link::Micros at;
        std::string text;
    };
    struct Answer {
        std::vector<Line> lines;
        link::Micros done; // when the prompt follows
    };

    void command(const std::string& text, link::Micros at);
    Answer atCommand(const std::string& cmd, link::Micros at);
    Answer request(const std::string& hex, link::Micros at);
    void reset();

    // The car's side.
    bool answers(char protocol) const;
    bool isCan(char protocol) const { return protocol >= '6' && protocol <= '9'; }
    std::optional<link::Micros> connect(char protocol, link::Micros at, std::vector<Line>& lines);
    link::Micros busInit(char protocol, link::Micros at, bool& ok);
    Answer askUnits(const link::Bytes& data, link::Micros at, std::optional<int> wanted);
    // Each answer's lines, and where each message ends in them.
    std::vector<Line> kLineAnswer(const Request& r, link::Micros at, std::vector<std::size_t>& ends);
    std::vector<Line> canAnswer(const Request& r, bool extended, link::Micros at, std::vector<std::size_t>& ends);
    std::string shown(const link::Bytes& bytes) const;

    void sendText(const std::string& text, link::Micros at);

    link::Clock& clock_;
    VehicleConfig config_;
    ElmTiming timing_;
    std::vector<std::unique_ptr<EcuModel>> units_;
    int lineBaud_ = kBaud;

    std::string input_;
    std::optional<link::Micros> inputStart_; // when the command being typed began to arrive
    std::string lastCommand_;
    link::Micros freeAt_ = 0; // the previous answer's prompt
    std::deque<std::pair<link::Micros, std::uint8_t>> out_;
    link::Micros serialFree_ = 0;
    Load load_;

    // Settings, as ATZ leaves them.
    bool echo_ = true, linefeeds_ = true, spaces_ = true, headers_ = false;
    int adaptive_ = 1;
    int timeoutUnits_ = 0x32; // ATST, in 4 ms
    int wakeUpUnits_ = 0x92;  // ATSW, in 20 ms; 0 stops the adapter's keep-alive
    char protocol_ = '0';
    bool automatic_ = true;
    char found_ = 0; // the protocol the search found or the bus that answered; 0 while none
    std::string header_;
    std::uint8_t initAddress_ = link::kline::kObdAddress;
    link::Micros lastBus_ = 0;
};

} // namespace kvx::sim
