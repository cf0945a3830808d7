#include "obd/O2SensorNames.h"

#include <array>
#include <utility>

namespace kvx::obd {

namespace {

// Tested from the top, first match wins. Rows for Bank 1 and 2 under the four-bank numbering
// would never be reached, so there are none.
constexpr std::array<std::pair<const char*, const char*>, 12> kSensorNumbers{{
    {"Bank 1 Sensor 1", "01"},
    {"Bank 1 Sensor 2", "02"},
    {"Bank 1 Sensor 3", "03"},
    {"Bank 1 Sensor 4", "04"},
    {"Bank 2 Sensor 1", "05"},
    {"Bank 2 Sensor 2", "06"},
    {"Bank 2 Sensor 3", "07"},
    {"Bank 2 Sensor 4", "08"},
    {"Bank 3 Sensor 1", "05"},
    {"Bank 3 Sensor 2", "06"},
    {"Bank 4 Sensor 1", "07"},
    {"Bank 4 Sensor 2", "08"},
}};

constexpr std::array<const char*, 11> kTestTitles{{
    "",
    "Rich to lean sensor threshold voltage",
    "Lean to rich sensor threshold voltage",
    "Low sensor voltage for switch time calculation",
    "High sensor voltage for switch time calculation",
    "Rich to lean sensor switch time",
    "Lean to rich sensor switch time",
    "Minimum sensor voltage for test cycle",
    "Maximum sensor voltage for test cycle",
    "Time between sensor transitions",
    "Sensor period",
}};

} // namespace

std::string O2SensorNumber(const std::string& sensorName)
{
    for (const auto& [name, number] : kSensorNumbers)
        if (sensorName == name)
            return number;
    return {};
}

std::string O2TestDescription(int tid)
{
    if (tid > 0 && tid < static_cast<int>(kTestTitles.size()))
        return kTestTitles[static_cast<std::size_t>(tid)];
    return {};
}

} // namespace kvx::obd
