#include "sim/NissanData.h"
#include "sim/PidTable.h"
#include "sim/VehicleProfile.h"

namespace kvx::sim {

namespace {

// Oxygen-sensor tests of the two bank 1 sensors (before and after the catalyst): rich/lean
// thresholds, switch voltages, switch times, extremes and time between transitions.
struct O2Pair {
    std::uint8_t tid;
    std::uint8_t value[2], min[2], max[2];
};
const O2Pair kO2Tests[] = {
    {0x01, {0x5A, 0x5A}, {0x5A, 0x5A}, {0x5A, 0x5A}},
    {0x02, {0x5A, 0x5A}, {0x5A, 0x5A}, {0x5A, 0x5A}},
    {0x03, {0x3C, 0x3C}, {0x3C, 0x3C}, {0x3C, 0x3C}},
    {0x04, {0x78, 0x78}, {0x78, 0x78}, {0x78, 0x78}},
    {0x05, {0x12, 0x2A}, {0x00, 0x00}, {0x30, 0x40}},
    {0x06, {0x15, 0x31}, {0x00, 0x00}, {0x30, 0x40}},
    {0x07, {0x10, 0x2C}, {0x00, 0x00}, {0x28, 0x3C}},
    {0x08, {0xAA, 0x9E}, {0x8C, 0x8C}, {0xFF, 0xFF}},
    {0x09, {0x19, 0x4B}, {0x0A, 0x0A}, {0x64, 0x96}},
};

const std::vector<MonitorResult> kMonitor = {
    {0x01, 0x01, 0x0152, 0x0200}, {0x01, 0x81, 0x0152, 0x0100}, // catalyst B1: inside both limits
    {0x02, 0x01, 0x0310, 0x0280},                                // O2 response B1S1: above maximum
    {0x03, 0x01, 0x00C8, 0x0190},                                // O2 heater B1S1 current
    {0x05, 0x01, 0x0020, 0x0040}, {0x05, 0x81, 0x0020, 0x0008}, // EGR flow
    {0x06, 0x01, 0x0003, 0x000A},                                // evaporative purge flow
    {0x07, 0x85, 0x0042, 0x0060},                                // misfire margin cylinder 5: below minimum
};

ValueSource constant(link::Bytes bytes) { return {ValueSource::Kind::Constant, std::move(bytes), {}, 0}; }

std::map<std::uint16_t, ValueSource> nissanItemsOf(std::uint8_t unit)
{
    std::map<std::uint16_t, ValueSource> items;
    for (const auto& item : nissanDriveItems(unit))
        items[item.identifier] = {};
    return items;
}

// A petrol engine with a misfire history, a tired catalyst and a lean long-term trim, answering
// the J1979 services, the Toyota parameters above B0 and the Nissan items.
UnitProfile engineUnit()
{
    UnitProfile u;
    u.address = 0x10;
    u.replyRank = 1;
    for (const auto& e : enginePids())
        u.pids[e.pid] = {};
    // The misfire set 460 s into an earlier drive; the frame holds the values that matter then.
    u.freezeFrame = FreezeFrameProfile{0x0301, {0x03, 0x04, 0x05, 0x06, 0x07, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F, 0x10, 0x11}, 460.0};
    u.stored = {0x0301, 0x0420, 0x0171, 0x0442, 0x0300, 0x0135};
    u.pending = {0x0128, 0x0455};
    for (const auto& t : kO2Tests)
        for (std::uint8_t sensor = 1; sensor <= 2; ++sensor)
            u.o2Tests.push_back({t.tid, sensor, t.value[sensor - 1], t.min[sensor - 1], t.max[sensor - 1]});
    u.monitorTests = kMonitor;
    u.vin = "KVX1E6TS4R0000913";
    u.kwpKb1Physical = kNissanKb1;
    u.nissanItems = nissanItemsOf(u.address);
    u.toyotaRanges = {0xB0, 0xC0, 0xE0};
    return u;
}

// The automatic gearbox: a handful of service 01 parameters, no codes of its own and the Nissan
// items. It is quicker than the engine unit, so its reply comes first.
UnitProfile gearboxUnit()
{
    UnitProfile u;
    u.address = 0x18;
    u.replyRank = 0;
    u.pids = {{0x01, constant({0x00, 0x00, 0x00, 0x00})}, {0x0D, {}}, {0x1C, constant({0x06})}};
    u.kwpKb1Physical = kNissanKb1;
    u.nissanItems = nissanItemsOf(u.address);
    return u;
}

} // namespace

VehicleProfile builtInVehicle()
{
    VehicleProfile v;
    v.name = "built-in";
    v.comment = "A petrol saloon with a misfire history: an engine unit and an automatic gearbox unit, "
                "ISO 9141-2 and ISO 14230, Nissan and Toyota enhanced data.";
    v.units = {engineUnit(), gearboxUnit()};
    return v;
}

} // namespace kvx::sim
