#include "link/decode/PidWords.h"

#include "link/Hex.h"

#include <array>

namespace kvx::link::decode {

namespace {

struct Monitor {
    const char* name;
    int bit;  // in B: supported at this bit, incomplete four bits higher
};

// Monitors in the order of their bits; the third byte differs between spark and compression ignition.
constexpr std::array<Monitor, 3> kContinuous = {{
    {"Misfire", 0}, {"Fuel system", 1}, {"Comprehensive components", 2}}};
constexpr std::array<const char*, 8> kSparkMonitors = {
    "Catalyst", "Heated catalyst", "Evaporative system", "Secondary air system",
    "A/C refrigerant", "Oxygen sensor", "Oxygen sensor heater", "EGR system"};
constexpr std::array<const char*, 8> kCompressionMonitors = {
    "NMHC catalyst", "NOx aftertreatment", "Reserved", "Boost pressure",
    "Reserved", "Exhaust gas sensor", "Particulate filter", "EGR / VVT system"};

bool bitSet(std::uint8_t value, int bit)
{
    return (value >> bit) & 1;
}

struct MonitorState {
    const char* name;
    bool supported;
    bool complete;
};

// Continuous monitors report completeness in the high nibble of B; the others in D.
template <typename Visit>
void forEachMonitor(const std::uint8_t* d, Visit visit)
{
    for (const auto& m : kContinuous)
        visit(MonitorState{m.name, bitSet(d[1], m.bit), !bitSet(d[1], m.bit + 4)});
    const bool compression = bitSet(d[1], 3);
    const auto& names = compression ? kCompressionMonitors : kSparkMonitors;
    for (int bit = 0; bit < 8; ++bit) {
        if (compression && (bit == 2 || bit == 4))
            continue;
        visit(MonitorState{names[static_cast<std::size_t>(bit)], bitSet(d[2], bit), !bitSet(d[3], bit)});
    }
}

} // namespace

std::string supportedList(const std::uint8_t* data, int base)
{
    std::string out;
    for (int i = 0; i < 32; ++i) {
        if (!bitSet(data[i / 8], 7 - i % 8))
            continue;
        if (!out.empty())
            out += ' ';
        out += toHex(static_cast<std::uint8_t>(base + i + 1));
    }
    return out.empty() ? "none" : out;
}

std::string monitorSummary(const std::uint8_t* d, bool thisDriveCycle)
{
    int supported = 0, incomplete = 0;
    forEachMonitor(d, [&](const MonitorState& m) {
        supported += m.supported;
        incomplete += m.supported && !m.complete;
    });
    std::string out;
    if (!thisDriveCycle) {
        out = bitSet(d[0], 7) ? "MIL on, " : "MIL off, ";
        const int codes = d[0] & 0x7F;
        out += std::to_string(codes) + (codes == 1 ? " code, " : " codes, ");
    }
    out += std::to_string(incomplete) + " of " + std::to_string(supported) +
           (thisDriveCycle ? " enabled monitors incomplete" : " monitors incomplete");
    return out;
}

std::string monitorLines(const std::uint8_t* d, bool thisDriveCycle)
{
    std::string out;
    if (!thisDriveCycle) {
        out += bitSet(d[0], 7) ? "MIL (check engine lamp): on\n" : "MIL (check engine lamp): off\n";
        out += "Confirmed trouble codes: " + std::to_string(d[0] & 0x7F) + "\n";
    }
    out += bitSet(d[1], 3) ? "Ignition: compression\n" : "Ignition: spark\n";
    const char* yes = thisDriveCycle ? "enabled" : "supported";
    const char* no = thisDriveCycle ? "disabled" : "not supported";
    forEachMonitor(d, [&](const MonitorState& m) {
        out += m.name;
        out += ": ";
        if (!m.supported)
            out += no;
        else
            out += std::string(yes) + (m.complete ? ", complete" : ", not complete");
        out += '\n';
    });
    return out;
}

std::string fuelSystemText(std::uint8_t system1, std::uint8_t system2)
{
    const auto one = [](std::uint8_t v) -> std::string {
        switch (v) {
        case 0x00: return "not present";
        case 0x01: return "Open loop (not yet warm)";
        case 0x02: return "Closed loop";
        case 0x04: return "Open loop (driving conditions)";
        case 0x08: return "Open loop (system fault)";
        case 0x10: return "Closed loop (O2 sensor fault)";
        default: return "Invalid (" + toHex(v) + ")";
        }
    };
    if (system2 == 0)
        return one(system1);
    return "1: " + one(system1) + "; 2: " + one(system2);
}

std::string secondaryAirText(std::uint8_t value)
{
    switch (value) {
    case 0x00: return "Not reported";
    case 0x01: return "Upstream of first catalyst";
    case 0x02: return "Downstream of first catalyst";
    case 0x04: return "Atmosphere / off";
    case 0x08: return "Pump on for diagnosis";
    default: return "Invalid (" + toHex(value) + ")";
    }
}

std::string obdStandardName(std::uint8_t value)
{
    static const std::array<const char*, 34> names = {
        nullptr,
        "OBD-II (California ARB)",
        "OBD (Federal EPA)",
        "OBD and OBD-II",
        "OBD-I",
        "Not OBD compliant",
        "EOBD (Europe)",
        "EOBD and OBD-II",
        "EOBD and OBD",
        "EOBD, OBD and OBD-II",
        "JOBD (Japan)",
        "JOBD and OBD-II",
        "JOBD and EOBD",
        "JOBD, EOBD and OBD-II",
        nullptr, nullptr, nullptr,
        "Engine manufacturer diagnostics (EMD)",
        "Engine manufacturer diagnostics enhanced (EMD+)",
        "Heavy-duty OBD (child / partial)",
        "Heavy-duty OBD",
        "World-wide harmonised OBD",
        nullptr,
        "Heavy-duty EOBD stage I without NOx control",
        "Heavy-duty EOBD stage I with NOx control",
        "Heavy-duty EOBD stage II without NOx control",
        "Heavy-duty EOBD stage II with NOx control",
        nullptr,
        "OBDBr-1 (Brazil)",
        "OBDBr-2 (Brazil)",
        "KOBD (Korea)",
        "IOBD I (India)",
        "IOBD II (India)",
        "Heavy-duty EOBD stage VI",
    };
    if (value < names.size() && names[value])
        return names[value];
    return "Reserved (" + toHex(value) + ")";
}

std::string auxInputText(std::uint8_t value)
{
    return bitSet(value, 0) ? "Power take-off active" : "Power take-off inactive";
}

std::string fuelTypeName(std::uint8_t value)
{
    static const std::array<const char*, 24> names = {
        "Not available", "Gasoline", "Methanol", "Ethanol", "Diesel", "LPG", "CNG", "Propane",
        "Electric", "Bi-fuel gasoline", "Bi-fuel methanol", "Bi-fuel ethanol", "Bi-fuel LPG",
        "Bi-fuel CNG", "Bi-fuel propane", "Bi-fuel electric", "Bi-fuel electric and combustion",
        "Hybrid gasoline", "Hybrid ethanol", "Hybrid diesel", "Hybrid electric",
        "Hybrid electric and combustion", "Hybrid regenerative", "Bi-fuel diesel"};
    if (value < names.size())
        return names[value];
    return "Reserved (" + toHex(value) + ")";
}

std::string sensorPosition(int index, bool fourBanks)
{
    const int perBank = fourBanks ? 2 : 4;
    return "Bank " + std::to_string(index / perBank + 1) + " Sensor " + std::to_string(index % perBank + 1);
}

std::string sensorsPresentShort(std::uint8_t bits, bool fourBanks)
{
    const int perBank = fourBanks ? 2 : 4;
    std::string out;
    for (int i = 0; i < 8; ++i) {
        if (!bitSet(bits, i))
            continue;
        if (!out.empty())
            out += ' ';
        out += "B" + std::to_string(i / perBank + 1) + "S" + std::to_string(i % perBank + 1);
    }
    return out.empty() ? "none" : out;
}

std::string sensorsPresentLines(std::uint8_t bits, bool fourBanks)
{
    const int perBank = fourBanks ? 2 : 4;
    std::string out;
    for (int bank = 0; bank < 8 / perBank; ++bank) {
        std::string sensors;
        int count = 0;
        for (int s = 0; s < perBank; ++s) {
            if (!bitSet(bits, bank * perBank + s))
                continue;
            sensors += (count++ ? ", " : "") + std::to_string(s + 1);
        }
        if (count)
            out += "Bank " + std::to_string(bank + 1) + (count == 1 ? ": sensor " : ": sensors ") + sensors + "\n";
    }
    return out.empty() ? "No oxygen sensors present\n" : out;
}

} // namespace kvx::link::decode
