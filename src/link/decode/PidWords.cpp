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

std::string monitorCell(const std::uint8_t* d, bool thisDriveCycle, int cell)
{
    int supported = 0, incomplete = 0;
    forEachMonitor(d, [&](const MonitorState& m) {
        supported += m.supported;
        incomplete += m.supported && !m.complete;
    });
    if (thisDriveCycle)
        return cell == 1 ? std::to_string(supported) + " monitors enabled"
                         : std::to_string(incomplete) + " not complete";
    if (cell == 2)
        return std::to_string(incomplete) + " of " + std::to_string(supported) + " incomplete";
    const int codes = d[0] & 0x7F;
    return std::string(bitSet(d[0], 7) ? "MIL on, " : "MIL off, ") + std::to_string(codes) +
           (codes == 1 ? " code" : " codes");
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

std::string fuelSystemText(std::uint8_t status)
{
    switch (status) {
    case 0x00: return "not present";
    case 0x01: return "Open loop, cold";
    case 0x02: return "Closed loop";
    case 0x04: return "Open loop, driving";
    case 0x08: return "Open loop, fault";
    case 0x10: return "Closed, O2 fault";
    default: return "Invalid (" + toHex(status) + ")";
    }
}

std::string secondaryAirText(std::uint8_t value)
{
    switch (value) {
    case 0x00: return "Not reported";
    case 0x01: return "Before catalyst";
    case 0x02: return "After catalyst";
    case 0x04: return "Outside air / off";
    case 0x08: return "Pump on (diagnosis)";
    default: return "Invalid (" + toHex(value) + ")";
    }
}

std::string obdStandardName(std::uint8_t value, bool shortForm)
{
    struct Name {
        const char* full;
        const char* brief;
    };
    static const std::array<Name, 34> names = {{
        {nullptr, nullptr},
        {"OBD-II (California ARB)", "OBD-II (CARB)"},
        {"OBD (Federal EPA)", "OBD (EPA)"},
        {"OBD and OBD-II", "OBD and OBD-II"},
        {"OBD-I", "OBD-I"},
        {"Not OBD compliant", "Not OBD compliant"},
        {"EOBD (Europe)", "EOBD (Europe)"},
        {"EOBD and OBD-II", "EOBD and OBD-II"},
        {"EOBD and OBD", "EOBD and OBD"},
        {"EOBD, OBD and OBD-II", "EOBD, OBD, OBD-II"},
        {"JOBD (Japan)", "JOBD (Japan)"},
        {"JOBD and OBD-II", "JOBD and OBD-II"},
        {"JOBD and EOBD", "JOBD and EOBD"},
        {"JOBD, EOBD and OBD-II", "JOBD, EOBD, OBD-II"},
        {nullptr, nullptr}, {nullptr, nullptr}, {nullptr, nullptr},
        {"Engine manufacturer diagnostics (EMD)", "EMD"},
        {"Engine manufacturer diagnostics enhanced (EMD+)", "EMD+"},
        {"Heavy-duty OBD (child / partial)", "HD OBD-C (partial)"},
        {"Heavy-duty OBD", "HD OBD"},
        {"World-wide harmonised OBD", "WWH-OBD"},
        {nullptr, nullptr},
        {"Heavy-duty EOBD stage I without NOx control", "HD EOBD-I"},
        {"Heavy-duty EOBD stage I with NOx control", "HD EOBD-I, NOx"},
        {"Heavy-duty EOBD stage II without NOx control", "HD EOBD-II"},
        {"Heavy-duty EOBD stage II with NOx control", "HD EOBD-II, NOx"},
        {nullptr, nullptr},
        {"OBDBr-1 (Brazil)", "OBDBr-1 (Brazil)"},
        {"OBDBr-2 (Brazil)", "OBDBr-2 (Brazil)"},
        {"KOBD (Korea)", "KOBD (Korea)"},
        {"IOBD I (India)", "IOBD I (India)"},
        {"IOBD II (India)", "IOBD II (India)"},
        {"Heavy-duty EOBD stage VI", "HD EOBD-VI"},
    }};
    if (value < names.size() && names[value].full)
        return shortForm ? names[value].brief : names[value].full;
    return "Reserved (" + toHex(value) + ")";
}

std::string auxInputText(std::uint8_t value)
{
    return bitSet(value, 0) ? "Power take-off on" : "Power take-off off";
}

std::string fuelTypeName(std::uint8_t value)
{
    static const std::array<const char*, 24> names = {
        "Not available", "Gasoline", "Methanol", "Ethanol", "Diesel", "LPG", "CNG", "Propane",
        "Electric", "Bi-fuel gasoline", "Bi-fuel methanol", "Bi-fuel ethanol", "Bi-fuel LPG",
        "Bi-fuel CNG", "Bi-fuel propane", "Bi-fuel electric", "Bi-fuel elec.+comb.",
        "Hybrid gasoline", "Hybrid ethanol", "Hybrid diesel", "Hybrid electric",
        "Hybrid elec.+comb.", "Hybrid regenerative", "Bi-fuel diesel"};
    if (value < names.size())
        return names[value];
    return "Reserved (" + toHex(value) + ")";
}

std::string sensorPosition(int index, bool fourBanks)
{
    const int perBank = fourBanks ? 2 : 4;
    return "Bank " + std::to_string(index / perBank + 1) + " Sensor " + std::to_string(index % perBank + 1);
}

std::string sensorsPresentCell(std::uint8_t bits, bool fourBanks, int cell)
{
    const int perBank = fourBanks ? 2 : 4;
    const int first = cell == 1 ? 0 : 4;
    std::string out;
    for (int i = first; i < first + 4; ++i) {
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
