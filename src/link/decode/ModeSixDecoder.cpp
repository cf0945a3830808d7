#include "link/decode/ModeSixDecoder.h"

#include <algorithm>
#include <cctype>
#include <span>

namespace kvx::link {

namespace {

struct TestName {
    const char* tid;
    const char* component;
    int typeCode;  // 0: either limit type
    const char* test;
    const char* part;  // "" when the test has a single component
};

struct VehicleTests {
    const char* make;
    const char* year;
    std::span<const TestName> tests;
};

constexpr int kAny = 0;
constexpr int kMinimum = 4;
constexpr int kMaximum = 3;
constexpr int kEngineUnit = 1;

// The engine unit of the 1997 four- and six-cylinder models (ISO 9141 only).
constexpr TestName kAcura1997[] = {
    {"01", "01", kAny, "Catalyst efficiency", "Bank 1"},
    {"01", "02", kAny, "Catalyst efficiency", "Bank 2"},
    {"02", "01", kAny, "O2 sensor response time", "Bank 1 Sensor 1"},
    {"02", "05", kAny, "O2 sensor response time", "Bank 2 Sensor 1"},
    {"03", "01", kAny, "O2 sensor heater current", "Bank 1 Sensor 1"},
    {"03", "02", kAny, "O2 sensor heater current", "Bank 1 Sensor 2"},
    {"03", "05", kAny, "O2 sensor heater current", "Bank 2 Sensor 1"},
    {"04", "02", kMinimum, "Rear O2 sensor low voltage", "Bank 1 Sensor 2"},
    {"04", "02", kMaximum, "Rear O2 sensor high voltage", "Bank 1 Sensor 2"},
    {"05", "01", kAny, "EGR flow", "Manifold pressure change"},
    {"05", "02", kAny, "EGR valve lift", "Lift sensor"},
    {"06", "01", kAny, "EVAP purge flow", "Purge flow switch"},
    {"06", "02", kAny, "EVAP control system", "Purge valve"},
    {"07", "01", kAny, "Misfire", "Cylinder 1"},
    {"07", "02", kAny, "Misfire", "Cylinder 2"},
    {"07", "03", kAny, "Misfire", "Cylinder 3"},
    {"07", "04", kAny, "Misfire", "Cylinder 4"},
    {"07", "05", kAny, "Misfire", "Cylinder 5"},
    {"07", "06", kAny, "Misfire", "Cylinder 6"},
    {"08", "01", kMinimum, "Fuel system rich limit", "Bank 1"},
    {"08", "01", kMaximum, "Fuel system lean limit", "Bank 1"},
    {"08", "02", kMinimum, "Fuel system rich limit", "Bank 2"},
    {"08", "02", kMaximum, "Fuel system lean limit", "Bank 2"},
};

constexpr VehicleTests kVehicles[] = {
    {"acura", "1997", kAcura1997},
};

std::string normalised(const std::string& text, bool lower)
{
    std::string out;
    for (unsigned char c : text) {
        if (std::isspace(c))
            continue;
        out += static_cast<char>(lower ? std::tolower(c) : std::toupper(c));
    }
    return out;
}

} // namespace

std::string ModeSixDecoder::Describe(const std::string& make, const std::string& year, const std::string& tid,
                                     const std::string& component, int typeCode, int unit,
                                     const std::string& separator, const std::string& fallback) const
{
    if (unit != kEngineUnit)
        return fallback;
    const std::string wantMake = normalised(make, true);
    const std::string wantYear = normalised(year, true);
    const std::string wantTid = normalised(tid, false);
    const std::string wantPart = normalised(component, false);
    const auto vehicle = std::find_if(std::begin(kVehicles), std::end(kVehicles), [&](const VehicleTests& v) {
        return wantMake == v.make && wantYear == v.year;
    });
    if (vehicle == std::end(kVehicles))
        return fallback;
    for (const auto& t : vehicle->tests) {
        if (wantTid != t.tid || wantPart != t.component || (t.typeCode != kAny && t.typeCode != typeCode))
            continue;
        std::string text = t.test;
        if (*t.part)
            text += " " + separator + " " + t.part;
        return text;
    }
    return fallback;
}

} // namespace kvx::link
