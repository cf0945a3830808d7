#pragma once

#include "link/Clock.h"
#include "link/Hex.h"
#include "link/Wire.h"
#include "sim/BusRecord.h"
#include "sim/EcuModel.h"
#include "sim/FaultPlan.h"
#include "sim/VehicleProfile.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace kvx::sim {

// The vehicle's own timing, chosen inside the windows a tester must accept.
struct EcuTiming {
    link::Micros w1 = link::ms(100); // end of the address to the sync byte (60..300)
    link::Micros w2 = link::ms(10);  // sync to KB1 (5..20)
    link::Micros w3 = link::ms(5);   // KB1 to KB2 (0..20)
    link::Micros w4 = link::ms(30);  // tester's inverted KB2 to the inverted address (25..50)
    link::Micros p1 = link::ms(2);   // between the bytes of a reply (0..20)
    link::Micros p2 = link::ms(30);  // request to reply, and between replies (25..50)
    link::Micros p2Late = link::ms(48);    // the "near P2max" fault
    link::Micros pending = link::ms(400);  // "response pending" to the real answer
    link::Micros p3Max = link::ms(5000);   // silence after which a session is given up
};

using EcuFactory = std::function<std::unique_ptr<EcuModel>(link::Clock&, std::uint64_t seed)>;

struct VehicleConfig {
    std::uint64_t seed = 1;
    FaultPlan faults;
    // The units on the bus, the first holding the slow-init handshake; empty means the built-in
    // car's engine unit (0x10) and transmission unit (0x18).
    std::vector<EcuFactory> units;
    EcuTiming timing;
    // A pty carries no break: open KWP sessions on a StartCommunication message alone and answer
    // ISO 9141 requests without a 5-baud wake-up.
    bool noBreaks = false;
    // What a 5-baud wake-up opens: ISO 9141-2 or ISO 14230 (the first unit's key bytes); nullopt:
    // the car does not answer one.
    std::optional<link::LineKind> slowInit = link::LineKind::Iso9141;
    // ISO 9141-2 key bytes: 08 08, or 94 94 for a unit that may answer at once.
    std::uint8_t isoKeyByte = link::kline::kIsoKeyByte;
    bool fastInit = true; // the car answers the ISO 14230 fast init
    // Every unit's ISO 14230 KB1, in place of its own; the units then write their headers in the
    // form it names (0xEA: addresses and a separate length byte only).
    std::optional<std::uint8_t> kwpKb1;
};

// The config that runs a car described as data: its units, wake-ups and timing. Throws
// std::invalid_argument, in plain words, when the profile asks for something no unit can give.
VehicleConfig configFor(const VehicleProfile& profile, std::uint64_t seed);

// A car on a K-line. Passive: it works out what happened on the bus from the clock whenever its
// wire is used, so it needs no thread and runs the same on virtual and real time.
class VirtualVehicle {
public:
    explicit VirtualVehicle(link::Clock& clock, VehicleConfig config = {});
    ~VirtualVehicle();
    VirtualVehicle(const VirtualVehicle&) = delete;
    VirtualVehicle& operator=(const VirtualVehicle&) = delete;

    // A Wire onto this vehicle's bus (the link cannot tell it from a cable). The vehicle outlives it.
    std::unique_ptr<link::Wire> makeWire();
    // The bus's own record: every break edge and byte with its time and origin (tester/echo/ECU).
    const BusRecord& record() const { return record_; }
    link::Clock& clock() const { return clock_; }

    // The tester's side of the bus, used by the wires. Everything happens at the clock's now().
    void setBaud(int baud);
    int baud() const { return baud_; }
    void testerBreak(bool on);
    void testerWrite(const link::Bytes& bytes);
    // Everything that has reached the tester so far, oldest first (echoes included); taken once.
    link::Bytes takeReceived();
    // When something next reaches the tester or changes inside the vehicle; nullopt when idle.
    std::optional<link::Micros> nextEvent() const;
    // Brings the vehicle's state up to time t (never past the clock's now()).
    void settle(link::Micros t);
    link::Micros byteTime() const;
    bool sessionOpen() const { return session_.has_value(); }

    // A silent unit answers nothing (wake-ups, StartCommunication, requests) until it is given its
    // voice back; the other units go on as before. For testing reconnection and the end of a
    // session on one unit. Open sessions stay open: the tester only hears nothing.
    void setSilent(std::uint8_t unit, bool silent);

private:
    struct Session {
        link::LineKind protocol;
        link::Micros lastActivity;
        // Set when a StartCommunication to one unit chose headers without addresses: such
        // requests are that unit's, from this tester.
        std::optional<std::uint8_t> shortHeaderUnit;
        std::uint8_t shortHeaderTester = 0;
        bool lengthByte = false; // the key bytes named the separate length byte
    };
    struct Pending {
        link::Micros time; // end of the byte
        link::TraceOrigin origin;
        std::uint8_t byte;
    };
    enum class Wake { None, LowPulse, FiveBaud, AwaitInvKb2, AwaitStart };

    std::optional<link::Micros> nextInternal() const;
    void processAt(link::Micros t);
    void beginWakeUp(link::Micros t);
    void finishAddress();
    void onTesterByte(std::uint8_t byte, link::Micros end);
    void completeFrame();
    void startCommunication(const Request& request, link::Micros end);
    void handleRequest(const Request& request, link::Micros end);
    link::Micros sendByte(std::uint8_t byte, link::Micros start, link::TraceOrigin origin = link::TraceOrigin::Ecu);
    link::Micros sendFrame(const link::Bytes& frame, link::Micros start);
    void openSession(link::LineKind protocol, link::Micros at, std::uint8_t kb1 = 0);
    std::uint8_t kb1Of(const EcuModel& unit, bool functional) const;
    void dropSessionIfSilent(link::Micros t);
    std::optional<link::LineKind> listeningProtocol() const;
    std::vector<EcuModel*> unitsByRank() const;
    bool silent(const EcuModel& unit) const;
    void refuseWake(const std::string& why);
    InitObservation observe(InitObservation::Kind kind) const;

    link::Clock& clock_;
    VehicleConfig config_;
    std::vector<std::unique_ptr<EcuModel>> units_;
    BusRecord record_;
    int baud_ = 10400;
    std::deque<Pending> outgoing_; // tester bytes, echoes and unit bytes still to happen, by time
    link::Bytes received_;
    link::Micros testerLineFree_ = 0;
    link::Micros unitLineFree_ = 0;
    bool lineLow_ = false;
    std::optional<Session> session_;
    Wake wake_ = Wake::None;
    link::Micros lowEdge_ = 0;
    link::Micros idleBefore_ = -1;
    std::vector<link::Micros> wakeEdges_;
    link::Micros wakeDeadline_ = 0;
    std::uint8_t expectedInvKb2_ = 0;
    std::uint8_t wakeKb1_ = 0;
    Fault wakeFault_ = Fault::None;
    link::Bytes frame_; // the tester frame being received
    link::Micros frameLastByte_ = 0;
    int wakeUps_ = 0;
    Fault requestFault_ = Fault::None;
    std::uint64_t noise_;
    std::set<std::uint8_t> silent_;
};

} // namespace kvx::sim
