#pragma once

#include <cstdint>
#include <map>
#include <vector>

namespace kvx::sim {

enum class Fault {
    None,
    Silence,         // no unit answers this request
    DropSession,     // the units give the session up: silent until a new wake-up
    BadChecksum,     // the engine unit's last frame carries a wrong checksum
    Noise,           // stray bytes on the line before the replies
    NegativeReply,   // the engine unit refuses (7F, conditions not correct)
    ResponsePending, // the engine unit answers 7F .. 78 first, then the real answer
    LateReply,       // replies start just inside P2max
    WrongKeyBytes,   // a wake-up answered with key bytes no tester may accept
    WrongInvertedAddress, // a 5-baud wake-up ended with the address itself, not its inverse
    NoEcho,          // the interface echoes nothing of this request
    Collision,       // one echoed byte comes back changed
};

// Which faults strike which exchange. Requests and wake-ups are numbered from 0 in the order the
// vehicle sees them; the answer depends only on the seed and the number, so a run can be repeated.
struct FaultPlan {
    std::uint64_t seed = 0;
    double rate = 0.0;                // chance that a request or wake-up gets a random fault
    std::vector<Fault> kinds;         // the faults drawn from (all when empty)
    std::map<int, Fault> requests;    // fixed faults by request number, before any random one
    std::map<int, Fault> wakeUps;     // fixed faults by wake-up number
    std::vector<std::uint8_t> noise;  // the stray bytes of a Noise fault; two random ones when empty

    Fault forRequest(int n) const;
    Fault forWakeUp(int n) const;
};

} // namespace kvx::sim
