#include "sim/NissanData.h"

#include "sim/EngineSignals.h"
#include "sim/ValueBytes.h"

#include <algorithm>

namespace kvx::sim {

using namespace link::kline;

namespace {

constexpr std::uint8_t kReadReply = positiveReply(kReadDataByIdentifier);
constexpr std::uint8_t kGearboxUnit = 0x18;

double celsius(double c) { return c + 50.0; }
double volts(double v) { return v / 0.08; }
double throttleAngle(const EngineState& s) { return s.throttlePct * 0.9 / 0.5; }
double turbineRpm(const EngineState& s) { return s.rpm * (s.speedKmh > 1.0 ? 0.97 : 1.0); }

const std::vector<NissanItemCode> kEngine = {
    {0x1101, [](const EngineState& s) { return two(s.rpm); }},
    {0x1102, [](const EngineState& s) { return one(celsius(s.coolantC)); }},
    {0x1103, [](const EngineState& s) { return one(s.speedKmh); }},
    {0x1104, [](const EngineState& s) { return one(volts(s.batteryV)); }},
    {0x1105, [](const EngineState& s) { return one(throttleSensorVolts(s) / 0.02); }},
    {0x1106, [](const EngineState& s) { return one(throttleAngle(s)); }},
    {0x1107, [](const EngineState& s) { return two(injectionMs(s) / 0.01); }},
    {0x1108, [](const EngineState& s) { return signedOne(s.timingDeg); }},
    {0x1109, [](const EngineState& s) { return one(pct(idleValvePct(s))); }},
    {0x110A, [](const EngineState& s) { return one(airFlowMeterVolts(s) / 0.02); }},
    {0x110B, [](const EngineState& s) { return one(celsius(s.intakeC)); }},
    {0x110C, [](const EngineState& s) { return one(trim(s.shortTrimPct)); }},
    {0x110D, [](const EngineState& s) { return one(trim(s.longTrimPct)); }},
    {0x110E, [](const EngineState& s) { return one(s.o2UpstreamV / 0.005); }},
    {0x110F, [](const EngineState& s) { return one(targetIdleRpm(s) / 10.0); }},
    {0x1110, [](const EngineState& s) { return one(pct(s.loadPct)); }},
    {0x1111, [](const EngineState& s) { return two(s.mafGs * 100.0); }},
    {0x1121, [](const EngineState& s) { return one(celsius(s.ambientC + (s.coolantC - s.ambientC) * 0.3)); }},
    {0x1122, [](const EngineState& s) { return one(s.mapKpa); }},
    {0x1123, [](const EngineState& s) { return one(s.baroKpa); }},
    {0x1141, [](const EngineState& s) { return one(s.throttlePct > 30.0 ? 4.0 : 0.0); }},
    {0x1160, [](const EngineState& s) { return two(s.runSeconds); }},
    {0x1201, [](const EngineState& s) { return one(pct(40.0 + s.loadPct * 0.4)); }},
    {0x1202, [](const EngineState& s) { return one(pct(s.closedLoop ? 22.0 : 0.0)); }},
    {0x1203, [](const EngineState& s) { return one(pct(s.throttlePct > 10.0 && s.throttlePct < 30.0 ? 12.0 : 0.0)); }},
    {0x1301,
     [](const EngineState& s) {
         return link::Bytes{bits({s.runSeconds < 2.0, s.throttlePct < 5.0, inPark(s), s.speedKmh < 1.0,
                                  airConditioning(s), true})};
     }},
    {0x1302,
     [](const EngineState& s) {
         return link::Bytes{bits({true, s.coolantC > 88.0, false, s.coolantC < 40.0, false, false, false,
                                  waitingAtLight(s)})};
     }},
    // A register the unit reports but whose bits mean nothing to a tester.
    {0x1303, [](const EngineState&) { return link::Bytes{0x00}; }},
};

const std::vector<NissanItemCode> kGearbox = {
    {0x1101, [](const EngineState& s) { return two(turbineRpm(s)); }},
    {0x1102, [](const EngineState& s) { return one(celsius(s.coolantC - 8.0)); }},
    {0x1103, [](const EngineState& s) { return one(s.speedKmh); }},
    {0x1104, [](const EngineState& s) { return one(volts(s.batteryV)); }},
    {0x1105, [](const EngineState& s) { return two(s.speedKmh * 28.0); }},
    {0x1106, [](const EngineState& s) { return one(throttleAngle(s)); }},
    {0x1107, [](const EngineState& s) { return one(gearAt(s)); }},
    {0x1108, [](const EngineState& s) { return one(pct(20.0 + s.throttlePct)); }},
    {0x1109, [](const EngineState& s) { return one(pct(s.speedKmh > 60.0 ? 95.0 : 0.0)); }},
    {0x110A, [](const EngineState& s) { return signedTwo(s.rpm - turbineRpm(s)); }},
    {0x1301,
     [](const EngineState& s) {
         return link::Bytes{bits({true, inPark(s), !inPark(s), false, false, false, false, waitingAtLight(s)})};
     }},
    {0x1302,
     [](const EngineState& s) {
         const int g = gearAt(s);
         return link::Bytes{bits({g <= 2 || g == 4, g <= 3, g <= 3, s.speedKmh > 60.0})};
     }},
};

using Identifiers = std::vector<std::uint16_t>;

bool hasItem(const Identifiers& items, int identifier)
{
    return std::find(items.begin(), items.end(), identifier) != items.end();
}

bool rangeHasItems(const Identifiers& items, int first, int last)
{
    return std::any_of(items.begin(), items.end(), [first, last](int i) { return i >= first && i <= last; });
}

link::Bytes supportBitmap(const Identifiers& items, int start)
{
    std::uint32_t map = 0;
    for (int n = 1; n <= 32; ++n) {
        const int identifier = start + n;
        const int low = identifier & 0xFF;
        // The last bit of the 00 and 20 ranges points at the next range rather than at an item.
        const bool marker = (low == 0x20 || low == 0x40) && rangeHasItems(items, identifier + 1, identifier + 32);
        if (marker || hasItem(items, identifier))
            map |= 1u << (32 - n);
    }
    return {static_cast<std::uint8_t>(map >> 24), static_cast<std::uint8_t>(map >> 16),
            static_cast<std::uint8_t>(map >> 8), static_cast<std::uint8_t>(map)};
}

} // namespace

const std::vector<NissanItemCode>& nissanDriveItems(std::uint8_t unit) { return unit == kGearboxUnit ? kGearbox : kEngine; }

std::vector<link::Bytes> readNissanData(const Identifiers& items, const Request& r,
                                        const std::function<link::Bytes(std::uint16_t)>& valueOf)
{
    if (r.payload.size() < 3)
        return {negative(r.payload.front(), kSubFunctionNotSupported)};
    const int identifier = r.payload[1] << 8 | r.payload[2];
    link::Bytes reply{kReadReply, r.payload[1], r.payload[2]};
    link::Bytes data;
    const int low = identifier & 0xFF;
    if (low == 0x00 || low == 0x20 || low == 0x40) {
        data = supportBitmap(items, identifier);
    } else {
        if (!hasItem(items, identifier))
            return lacking(r, kOutOfRange);
        data = valueOf(static_cast<std::uint16_t>(identifier));
    }
    reply.insert(reply.end(), data.begin(), data.end());
    return {reply};
}

} // namespace kvx::sim
