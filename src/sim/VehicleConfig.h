#pragma once

#include "link/Clock.h"
#include "link/Protocol.h"
#include "link/ProtocolBytes.h"
#include "sim/EcuModel.h"
#include "sim/FaultPlan.h"
#include "sim/VehicleProfile.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
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
    // A CAN car answers no wake-up on the K-line; only the emulated adapter reaches its units.
    Bus bus = Bus::KLine;
};

// The config that runs a car described as data: its units, wake-ups and timing. Throws
// std::invalid_argument, in plain words, when the profile asks for something no unit can give.
VehicleConfig configFor(const VehicleProfile& profile, std::uint64_t seed);

} // namespace kvx::sim
