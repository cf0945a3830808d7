#pragma once

#include "link/Clock.h"
#include "link/Hex.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kvx::sim {

// A trouble code in its two-byte form (P0301 is 03 01, U0100 is C1 00).
using TroubleCode = std::uint16_t;

// Where a value a unit reports comes from.
struct ValueSource {
    enum class Kind {
        Drive,    // the unit's own encoder for this item, following the drive of the built-in car
        Constant, // always `bytes`
        Ramp,     // from `bytes` to `to` over `periodSeconds`, then again from `bytes`
    };
    Kind kind = Kind::Drive;
    link::Bytes bytes;
    link::Bytes to;
    double periodSeconds = 0;

    bool operator==(const ValueSource&) const = default;
};

// One oxygen-sensor test result of service 05 for one sensor.
struct O2TestResult {
    std::uint8_t tid = 0;
    std::uint8_t sensor = 0; // the O2 sensor number as service 05 addresses it
    std::uint8_t value = 0, min = 0, max = 0;

    bool operator==(const O2TestResult&) const = default;
};

// One on-board monitoring result of service 06; bit 7 of cid says the limit is a minimum. On CAN
// the tid is the monitor's OBDMID, the cid its test id, and scaling the unit-and-scaling id its
// value and limit are given in (01: a plain count).
struct MonitorResult {
    std::uint8_t tid = 0, cid = 0;
    std::uint16_t value = 0, limit = 0;
    std::uint8_t scaling = 0x01;

    bool operator==(const MonitorResult&) const = default;
};

// The freeze frame a unit holds: the code that set it, and the service 01 items it froze, valued
// as they were `atSeconds` into the drive.
struct FreezeFrameProfile {
    TroubleCode code = 0;
    std::vector<std::uint8_t> pids;
    double atSeconds = 0;

    bool operator==(const FreezeFrameProfile&) const = default;
};

// One control unit on the bus, everything it answers.
struct UnitProfile {
    std::uint8_t address = 0x10;
    int replyRank = 0; // a lower rank answers a functional request first

    // Service 01 items by number; the 00/20/40/... bitmaps are worked out from these.
    std::map<std::uint8_t, ValueSource> pids;
    std::optional<FreezeFrameProfile> freezeFrame;
    std::vector<TroubleCode> stored;
    std::vector<TroubleCode> pending;
    std::vector<O2TestResult> o2Tests;       // empty: the unit has no service 05
    std::vector<MonitorResult> monitorTests; // empty: the unit has no service 06
    std::string vin;                         // empty: service 09 has no VIN
    // Services the unit refuses with 7F, the service and this code (e.g. 04 -> 22).
    std::map<std::uint8_t, std::uint8_t> refusals;
    // Services the unit first answers with "response pending" (7F xx 78), then for real.
    std::set<std::uint8_t> pendingFirst;

    // ISO 14230 key bytes: KB1 names the header forms the unit takes (length in the format byte
    // or a separate length byte, with or without addresses).
    std::uint8_t kwpKb1 = 0xEF;
    std::uint8_t kwpKb1Physical = 0xEF; // for a StartCommunication addressed to this unit alone
    std::uint8_t kwpKb2 = 0x8F;

    // Nissan service 0x22 items by identifier; nullopt: the unit has no service 0x22 at all,
    // an empty map: it has the service but no items.
    std::optional<std::map<std::uint16_t, ValueSource>> nissanItems;
    // The Toyota ranges of service 01 above B0 the unit answers (any of B0, C0, E0).
    std::set<std::uint8_t> toyotaRanges;

    bool operator==(const UnitProfile&) const = default;
};

// The bus the units sit on: the K-line, or CAN with 11 or 29-bit identifiers at 500 or 250 kbaud.
// A CAN car is only reached through an adapter that speaks CAN.
enum class Bus { KLine, Can11At500, Can29At500, Can11At250, Can29At250 };

// One car: how it wakes up, its timing and its units.
struct VehicleProfile {
    std::string name;    // how the garage lists it
    std::string comment; // the real situation it stands for
    Bus bus = Bus::KLine;

    enum class SlowInit { None, Iso9141, Kwp2000 };
    SlowInit slowInit = SlowInit::Iso9141; // what a 5-baud wake-up opens
    std::uint8_t isoKeyByte = 0x08;        // ISO 9141-2 key bytes: 08 08 or 94 94
    bool fastInit = true;                  // answers the ISO 14230 fast init

    link::Micros p2 = link::ms(30); // request to reply, and between replies (25..50)

    std::vector<UnitProfile> units; // in bus order; never empty

    bool operator==(const VehicleProfile&) const = default;
};

// The car the simulator has always been: the engine unit (0x10) and the gearbox unit (0x18).
VehicleProfile builtInVehicle();

} // namespace kvx::sim
