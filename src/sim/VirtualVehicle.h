#pragma once

#include "link/Clock.h"
#include "link/Hex.h"
#include "link/Wire.h"
#include "sim/BusRecord.h"
#include "sim/EcuModel.h"
#include "sim/LineSchedule.h"
#include "sim/VehicleConfig.h"
#include "sim/WakeUpDecoder.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace kvx::sim {

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
    link::Micros byteTime() const { return line_.byteTime(); }
    bool sessionOpen() const { return session_.has_value(); }
    // A CAN car's units are on the vehicle, but nothing answers on its K-line.
    Bus bus() const { return config_.bus; }

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
    // What the units wait for once a wake-up pattern was read.
    enum class Handshake { None, AwaitInvKb2, AwaitStart };

    std::optional<link::Micros> nextInternal() const;
    void processAt(link::Micros t);
    void beginWakeUp();
    void fastInitPulse(const InitObservation& obs);
    void finishAddress();
    void invertedKb2(std::uint8_t byte, link::Micros end);
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

    link::Clock& clock_;
    VehicleConfig config_;
    std::vector<std::unique_ptr<EcuModel>> units_;
    BusRecord record_;
    int baud_ = 10400;
    LineSchedule line_;
    link::Bytes received_;
    bool lineLow_ = false;
    std::optional<link::Micros> lastByte_; // when the last byte on the line ended
    std::optional<Session> session_;
    WakeUpDecoder wakeUp_;
    Handshake handshake_ = Handshake::None;
    link::Micros wakeDeadline_ = 0;
    std::uint8_t expectedInvKb2_ = 0;
    std::uint8_t wakeKb1_ = 0;
    Fault wakeFault_ = Fault::None;
    link::Bytes frame_; // the tester frame being received
    link::Micros frameLastByte_ = 0;
    int wakeUps_ = 0;
    Fault requestFault_ = Fault::None;
    std::uint64_t noiseBytes_ = 0; // stray bytes drawn so far
    std::set<std::uint8_t> silent_;
};

} // namespace kvx::sim
