#pragma once

#include "link/Clock.h"
#include "link/Hex.h"

#include <cstdint>
#include <vector>

namespace kvx::sim {

enum class Protocol { Iso9141, Kwp2000 };

// A request as a unit sees it, its header already taken off.
struct Request {
    Protocol protocol = Protocol::Iso9141;
    bool functional = true;    // to the OBD functional address rather than to one unit
    std::uint8_t target = 0x33;
    std::uint8_t source = 0xF1;
    bool addressed = true;     // the header carried target and source (false: the one-byte form)
    link::Bytes payload;       // service identifier and its parameters
    link::Micros time = 0;     // when the last byte of the request ended
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
    virtual std::uint8_t kwpKb1() const { return 0xEF; }
    // KB1 for a StartCommunication addressed to this unit alone; such a session may use another
    // header form than the functional one.
    virtual std::uint8_t kwpKb1Physical() const { return kwpKb1(); }
    virtual std::uint8_t kwpKb2() const { return 0x8F; }
};

// The negative response payload: 7F, the refused service, the reason.
inline link::Bytes negative(std::uint8_t service, std::uint8_t code) { return {0x7F, service, code}; }

constexpr std::uint8_t kServiceNotSupported = 0x11;
constexpr std::uint8_t kSubFunctionNotSupported = 0x12;

// A functional request for something a unit lacks goes unanswered (others may have it);
// a unit asked by its own address says no.
inline std::vector<link::Bytes> lacking(const Request& r, std::uint8_t code)
{
    if (r.functional)
        return {};
    return {negative(r.payload.front(), code)};
}

} // namespace kvx::sim
