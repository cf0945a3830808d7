#pragma once

#include "link/Clock.h"
#include "link/Hex.h"
#include "link/Protocol.h"
#include "link/ProtocolBytes.h"

#include <cstdint>
#include <vector>

namespace kvx::sim {

// A request as a unit sees it, its header already taken off.
struct Request {
    link::LineKind protocol = link::LineKind::Iso9141;
    bool functional = true;    // to the OBD functional address rather than to one unit
    std::uint8_t target = link::kline::kObdAddress;
    std::uint8_t source = link::kline::kTester;
    bool addressed = true;     // the header carried target and source (false: the one-byte form)
    link::Bytes payload;       // service identifier and its parameters
    link::Micros time = 0;     // when the last byte of the request ended
    bool can = false;          // came over CAN, where some answers take another form
};

// One simulated control unit. New makes of unit are new files implementing this.
class EcuModel {
public:
    virtual ~EcuModel() = default;
    virtual std::uint8_t address() const = 0;
    // Reply payloads (service identifier first), one per frame; empty when the unit keeps quiet.
    virtual std::vector<link::Bytes> answer(const Request& request) = 0;
    // Units with a lower rank answer a functional request first.
    virtual int replyRank() const { return 0; }
    // The ISO 14230 key bytes it wakes up with; KB1 tells the tester which header forms it takes.
    // EF: every header and length form, the normal timing.
    virtual std::uint8_t kwpKb1() const { return 0xEF; }
    // KB1 for a StartCommunication addressed to this unit alone; such a session may use another
    // header form than the functional one.
    virtual std::uint8_t kwpKb1Physical() const { return kwpKb1(); }
    virtual std::uint8_t kwpKb2() const { return link::kline::kKwpKb2; }
};

// The negative response payload: 7F, the refused service, the reason.
inline link::Bytes negative(std::uint8_t service, std::uint8_t code)
{
    return {link::kline::kNegativeReply, service, code};
}

// A functional request for something a unit lacks goes unanswered (others may have it);
// a unit asked by its own address says no.
inline std::vector<link::Bytes> lacking(const Request& r, std::uint8_t code)
{
    if (r.functional)
        return {};
    return {negative(r.payload.front(), code)};
}

} // namespace kvx::sim
