#include "sim/VehicleConfig.h"

#include "sim/ProfiledUnit.h"

#include <stdexcept>

namespace kvx::sim {

VehicleConfig configFor(const VehicleProfile& profile, std::uint64_t seed)
{
    if (profile.units.empty())
        throw std::invalid_argument("the car has no units");
    VehicleConfig config;
    config.seed = seed;
    switch (profile.slowInit) {
    case VehicleProfile::SlowInit::None: config.slowInit.reset(); break;
    case VehicleProfile::SlowInit::Iso9141: config.slowInit = link::LineKind::Iso9141; break;
    case VehicleProfile::SlowInit::Kwp2000: config.slowInit = link::LineKind::Kwp; break;
    }
    config.isoKeyByte = profile.isoKeyByte;
    config.fastInit = profile.fastInit;
    config.bus = profile.bus;
    if (profile.bus != Bus::KLine) {
        config.slowInit.reset();
        config.fastInit = false;
    }
    config.timing.p2 = profile.p2;
    for (std::size_t i = 0; i < profile.units.size(); ++i) {
        ProfiledUnit::check(profile.units[i]);
        // The first unit speaks for the car, as it holds the wake-up handshake.
        config.units.push_back([unit = profile.units[i], first = i == 0](link::Clock& clock, std::uint64_t unitSeed) {
            return std::make_unique<ProfiledUnit>(clock, unitSeed, unit, first);
        });
    }
    return config;
}

} // namespace kvx::sim
