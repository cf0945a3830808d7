#include "sim/FaultPlan.h"

#include "sim/Mix.h"

namespace kvx::sim {

namespace {

const std::vector<Fault> kAllFaults = {
    Fault::Silence,         Fault::DropSession, Fault::BadChecksum, Fault::Noise,  Fault::NegativeReply,
    Fault::ResponsePending, Fault::LateReply,   Fault::NoEcho,      Fault::Collision,
};

// Faults of the handshake, which no request can have.
bool onlyAtWakeUp(Fault f) { return f == Fault::WrongKeyBytes || f == Fault::WrongInvertedAddress; }

Fault draw(const FaultPlan& plan, std::uint64_t stream, int n, const std::vector<Fault>& pool)
{
    if (plan.rate <= 0.0 || pool.empty())
        return Fault::None;
    const std::uint64_t r = mix(plan.seed ^ mix(stream + static_cast<std::uint64_t>(n)));
    const double chance = static_cast<double>(r >> 11) / static_cast<double>(1ull << 53);
    if (chance >= plan.rate)
        return Fault::None;
    return pool[mix(r) % pool.size()];
}

} // namespace

Fault FaultPlan::forRequest(int n) const
{
    if (auto it = requests.find(n); it != requests.end())
        return it->second;
    std::vector<Fault> pool;
    for (Fault f : kinds.empty() ? kAllFaults : kinds)
        if (!onlyAtWakeUp(f))
            pool.push_back(f);
    return draw(*this, 0x5245510000000000ull, n, pool);
}

Fault FaultPlan::forWakeUp(int n) const
{
    if (auto it = wakeUps.find(n); it != wakeUps.end())
        return it->second;
    std::vector<Fault> pool;
    for (Fault f : kinds.empty() ? std::vector<Fault>{Fault::WrongKeyBytes, Fault::Silence} : kinds)
        if (onlyAtWakeUp(f) || f == Fault::Silence)
            pool.push_back(f);
    return draw(*this, 0x57414B4500000000ull, n, pool);
}

} // namespace kvx::sim
