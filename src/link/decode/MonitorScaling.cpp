#include "link/decode/MonitorScaling.h"

#include "link/ReplyText.h"
#include "link/decode/NumberText.h"
#include "link/decode/TestResults.h"

#include <algorithm>
#include <array>

namespace kvx::link::decode {

namespace {

constexpr std::uint8_t kMonitorReply = 0x46;
constexpr std::size_t kRecord = 9;

struct ScalingRow {
    std::uint8_t id;
    MonitorScaling scaling;
};

// The unit-and-scaling IDs of on-board monitor results: 01-41 unsigned, 81-FE the signed ones.
constexpr ScalingRow kScalings[] = {
    {0x01, {false, 1.0, 0, 0, ""}},
    {0x02, {false, 0.1, 0, 1, ""}},
    {0x03, {false, 0.01, 0, 2, ""}},
    {0x04, {false, 0.001, 0, 3, ""}},
    {0x05, {false, 0.0000305, 0, 7, ""}},
    {0x06, {false, 0.000305, 0, 6, ""}},
    {0x07, {false, 0.25, 0, 2, "rpm"}},
    {0x08, {false, 0.01, 0, 2, "km/h"}},
    {0x09, {false, 1.0, 0, 0, "km/h"}},
    {0x0A, {false, 0.000122, 0, 4, "V"}},
    {0x0B, {false, 0.001, 0, 3, "V"}},
    {0x0C, {false, 0.01, 0, 2, "V"}},
    {0x0D, {false, 0.00390625, 0, 3, "mA"}},
    {0x0E, {false, 0.001, 0, 3, "A"}},
    {0x0F, {false, 0.01, 0, 2, "A"}},
    {0x10, {false, 1.0, 0, 0, "ms"}},
    {0x11, {false, 100.0, 0, 0, "ms"}},
    {0x12, {false, 1.0, 0, 0, "s"}},
    {0x13, {false, 1.0, 0, 0, "mOhm"}},
    {0x14, {false, 1.0, 0, 0, "Ohm"}},
    {0x15, {false, 1.0, 0, 0, "kOhm"}},
    {0x16, {false, 0.1, -40.0, 1, "°C"}},
    {0x17, {false, 0.01, 0, 2, "kPa"}},
    {0x18, {false, 0.0117, 0, 4, "kPa"}},
    {0x19, {false, 0.079, 0, 3, "kPa"}},
    {0x1A, {false, 1.0, 0, 0, "kPa"}},
    {0x1B, {false, 10.0, 0, 0, "kPa"}},
    {0x1C, {false, 0.01, 0, 2, "°"}},
    {0x1D, {false, 0.5, 0, 1, "°"}},
    {0x1E, {false, 0.0000305, 0, 7, "lambda"}},
    {0x1F, {false, 0.05, 0, 2, "A/F"}},
    {0x20, {false, 0.0039062, 0, 4, ""}},
    {0x21, {false, 1.0, 0, 0, "mHz"}},
    {0x22, {false, 1.0, 0, 0, "Hz"}},
    {0x23, {false, 1.0, 0, 0, "kHz"}},
    {0x24, {false, 1.0, 0, 0, "counts"}},
    {0x25, {false, 1.0, 0, 0, "km"}},
    {0x26, {false, 0.1, 0, 1, "mV/ms"}},
    {0x27, {false, 0.01, 0, 2, "g/s"}},
    {0x28, {false, 1.0, 0, 0, "g/s"}},
    {0x29, {false, 0.25, 0, 2, "Pa/s"}},
    {0x2A, {false, 0.001, 0, 3, "kg/h"}},
    {0x2B, {false, 1.0, 0, 0, "switches"}},
    {0x2C, {false, 0.01, 0, 2, "g/cyl"}},
    {0x2D, {false, 0.01, 0, 2, "mg/stroke"}},
    {0x2E, {false, 1.0, 0, 0, ""}},
    {0x2F, {false, 0.01, 0, 2, "%"}},
    {0x30, {false, 0.001526, 0, 4, "%"}},
    {0x31, {false, 0.001, 0, 3, "L"}},
    {0x32, {false, 0.0007747, 0, 5, "in"}},
    {0x33, {false, 0.00024414, 0, 6, "lambda"}},
    {0x34, {false, 1.0, 0, 0, "min"}},
    {0x35, {false, 10.0, 0, 0, "ms"}},
    {0x36, {false, 0.01, 0, 2, "g"}},
    {0x37, {false, 0.1, 0, 1, "g"}},
    {0x38, {false, 1.0, 0, 0, "g"}},
    {0x39, {false, 0.01, -327.68, 2, "%"}},
    {0x3A, {false, 0.001, 0, 3, "g"}},
    {0x3B, {false, 0.0001, 0, 4, "g"}},
    {0x3C, {false, 0.1, 0, 1, "us"}},
    {0x3D, {false, 0.01, 0, 2, "mA"}},
    {0x3E, {false, 0.00006103516, 0, 8, "mm2"}},
    {0x3F, {false, 0.01, 0, 2, "L"}},
    {0x40, {false, 1.0, 0, 0, "ppm"}},
    {0x41, {false, 0.01, 0, 2, "uA"}},
    {0x81, {true, 1.0, 0, 0, ""}},
    {0x82, {true, 0.1, 0, 1, ""}},
    {0x83, {true, 0.01, 0, 2, ""}},
    {0x84, {true, 0.001, 0, 3, ""}},
    {0x85, {true, 0.0000305, 0, 7, ""}},
    {0x86, {true, 0.000305, 0, 6, ""}},
    {0x87, {true, 0.25, 0, 2, "rpm"}},
    {0x8A, {true, 0.000122, 0, 4, "V"}},
    {0x8B, {true, 0.001, 0, 3, "V"}},
    {0x8C, {true, 0.01, 0, 2, "V"}},
    {0x8D, {true, 0.00390625, 0, 3, "mA"}},
    {0x8E, {true, 0.001, 0, 3, "A"}},
    {0x90, {true, 1.0, 0, 0, "ms"}},
    {0x96, {true, 0.1, 0, 1, "°C"}},
    {0x9C, {true, 0.01, 0, 2, "°"}},
    {0x9D, {true, 0.5, 0, 1, "°"}},
    {0xA8, {true, 1.0, 0, 0, "g/s"}},
    {0xA9, {true, 0.25, 0, 2, "Pa/s"}},
    {0xAD, {true, 0.01, 0, 2, "mg/stroke"}},
    {0xAE, {true, 0.1, 0, 1, "mg/stroke"}},
    {0xAF, {true, 0.01, 0, 2, "%"}},
    {0xB0, {true, 0.003052, 0, 4, "%"}},
    {0xB1, {true, 2.0, 0, 0, "mV/s"}},
    {0xFC, {true, 0.01, 0, 2, "kPa"}},
    {0xFD, {true, 0.001, 0, 3, "kPa"}},
    {0xFE, {true, 0.25, 0, 2, "Pa"}},
};

struct MonitorRange {
    std::uint8_t first;
    std::uint8_t last;
    const char* name;
    bool sensors; // numbered by bank and sensor, four to a bank; otherwise by bank
};

constexpr MonitorRange kMonitors[] = {
    {0x01, 0x10, "O2 Sensor Monitor", true},
    {0x21, 0x24, "Catalyst Monitor", false},
    {0x31, 0x34, "EGR Monitor", false},
    {0x35, 0x38, "VVT Monitor", false},
    {0x3D, 0x3D, "Purge Flow Monitor", false},
    {0x41, 0x50, "O2 Sensor Heater Monitor", true},
    {0x61, 0x64, "Heated Catalyst Monitor", false},
    {0x71, 0x74, "Secondary Air Monitor", false},
    {0x81, 0x84, "Fuel System Monitor", false},
    {0x85, 0x88, "Boost Pressure Control Monitor", false},
    {0x90, 0x91, "NOx Adsorber Monitor", false},
    {0x98, 0x99, "NOx Catalyst Monitor", false},
    {0xB0, 0xB1, "PM Filter Monitor", false},
};

constexpr const char* kEvapMonitors[] = {"EVAP Monitor (Cap Off / 0.150\")", "EVAP Monitor (0.090\")",
                                         "EVAP Monitor (0.040\")", "EVAP Monitor (0.020\")"};

std::uint16_t word(const Bytes& d, std::size_t at) { return static_cast<std::uint16_t>(d[at] << 8 | d[at + 1]); }

double quantity(const MonitorScaling& s, std::uint16_t raw)
{
    const double count = s.isSigned ? static_cast<double>(static_cast<std::int16_t>(raw)) : static_cast<double>(raw);
    return count * s.scale + s.offset;
}

} // namespace

std::optional<MonitorScaling> monitorScaling(std::uint8_t id)
{
    const auto row = std::find_if(std::begin(kScalings), std::end(kScalings), [id](const ScalingRow& r) { return r.id == id; });
    if (row == std::end(kScalings))
        return std::nullopt;
    return row->scaling;
}

std::string scaledMonitorValue(std::uint8_t id, std::uint16_t raw)
{
    const auto s = monitorScaling(id);
    if (!s)
        return std::to_string(raw);
    return withUnit(quantity(*s, raw), s->decimals, s->unit);
}

std::string monitorName(std::uint8_t obdmid)
{
    if (obdmid >= 0x39 && obdmid <= 0x3C)
        return kEvapMonitors[obdmid - 0x39];
    if (obdmid == 0xA1)
        return "Misfire Monitor General Data";
    if (obdmid >= 0xA2 && obdmid <= 0xAD)
        return "Misfire Cylinder " + std::to_string(obdmid - 0xA1);
    for (const MonitorRange& r : kMonitors) {
        if (obdmid < r.first || obdmid > r.last)
            continue;
        const int n = obdmid - r.first;
        if (!r.sensors)
            return std::string(r.name) + " Bank " + std::to_string(n + 1);
        return std::string(r.name) + " Bank " + std::to_string(n / 4 + 1) + " - Sensor " + std::to_string(n % 4 + 1);
    }
    return {};
}

std::vector<MonitorTestTexts> formatCanMonitorTest(std::string_view message)
{
    const auto m = readMessage(message);
    if (!m || m->service != kMonitorReply || m->data.size() != kRecord)
        return {};
    const Bytes& d = m->data;
    const std::uint8_t uas = d[2];
    const std::uint16_t value = word(d, 3);
    const std::uint16_t limits[] = {word(d, 5), word(d, 7)};
    std::string description = monitorName(d[0]);
    // Test IDs 01-0A of the oxygen-sensor monitors are the standard sensor tests.
    const std::string test = d[0] <= 0x10 ? oxygenTestName(d[1]) : std::string();
    if (!test.empty())
        description += (description.empty() ? "" : " - ") + test;

    const auto scaling = monitorScaling(uas);
    const auto compare = [&](std::uint16_t raw) {
        return scaling ? quantity(*scaling, raw) : static_cast<double>(raw);
    };
    std::vector<MonitorTestTexts> rows;
    for (int i = 0; i < 2; ++i) {
        const bool minimum = i == 0;
        MonitorTestTexts t;
        t.tid = toHex(d[0]);
        t.component = toHex(d[1]);
        t.limitType = minimum ? "Minimum" : "Maximum";
        t.typeCode = minimum ? 4 : 3;
        t.limit = scaledMonitorValue(uas, limits[i]);
        t.result = scaledMonitorValue(uas, value);
        const bool pass = minimum ? compare(value) >= compare(limits[i]) : compare(value) <= compare(limits[i]);
        t.passFail = pass ? "PASS" : "FAIL";
        t.description = description;
        rows.push_back(std::move(t));
    }
    return rows;
}

} // namespace kvx::link::decode
