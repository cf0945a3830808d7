#include "sim/EngineUnit.h"

#include "sim/ToyotaPids.h"

#include <algorithm>
#include <cstring>

namespace kvx::sim {

using namespace link::kline;

namespace {

// The freeze frame holds the values that matter when a fault is logged.
const std::vector<std::uint8_t> kFreezePids = {0x03, 0x04, 0x05, 0x06, 0x07, 0x0B, 0x0C,
                                               0x0D, 0x0E, 0x0F, 0x10, 0x11};

// History of the car before the session: when the misfire was logged (seconds into the engine
// run that set it), and how long ago the codes were last cleared.
constexpr double kFirstFault = 460.0;
constexpr double kHistorySinceClear = 3.0 * 3600.0;
constexpr double kHistoryKmSinceClear = 212.0;
constexpr double kHistoryKmWithMil = 37.0;
constexpr double kHistorySecondsWithMil = 2.0 * 3600.0;

// Oxygen-sensor tests: rich/lean thresholds, switch voltages, switch times, extremes,
// and time between transitions. Per sensor: value, minimum, maximum.
struct O2Test {
    std::uint8_t tid;
    std::uint8_t value[2], min[2], max[2];
};
const std::vector<O2Test> kO2Tests = {
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

// Monitoring tests: test, component (bit 7: the limit is a minimum), value and limit.
struct MonitorResult {
    std::uint8_t tid, cid;
    std::uint16_t value, limit;
};
const std::vector<MonitorResult> kMonitor = {
    {0x01, 0x01, 0x0152, 0x0200}, {0x01, 0x81, 0x0152, 0x0100}, // catalyst B1: inside both limits
    {0x02, 0x01, 0x0310, 0x0280},                                // O2 response B1S1: above maximum
    {0x03, 0x01, 0x00C8, 0x0190},                                // O2 heater B1S1 current
    {0x05, 0x01, 0x0020, 0x0040}, {0x05, 0x81, 0x0020, 0x0008}, // EGR flow
    {0x06, 0x01, 0x0003, 0x000A},                                // evaporative purge flow
    {0x07, 0x85, 0x0042, 0x0060},                                // misfire margin cylinder 5: below minimum
};

link::Bytes codeBytes(TroubleCode c) { return {static_cast<std::uint8_t>(c >> 8), static_cast<std::uint8_t>(c)}; }

} // namespace

EngineUnit::EngineUnit(link::Clock& clock, std::uint64_t seed)
    : clock_(clock), seed_(seed), start_(clock.now()),
      stored_{0x0301, 0x0420, 0x0171, 0x0442, 0x0300, 0x0135}, pending_{0x0128, 0x0455}
{
    // The freeze frame was taken during the drive in which the first of the stored codes set.
    PidContext at = contextAt(start_);
    at.state = engineStateAt(kFirstFault, seed_);
    freeze_ = FreezeFrame{stored_.front(), at};
}

double EngineUnit::kmAt(double seconds)
{
    // Distance is the integral of speed; integrated in small steps as time goes by.
    for (; kmUpTo_ + 0.5 <= seconds; kmUpTo_ += 0.5)
        kmDone_ += engineStateAt(kmUpTo_, seed_).speedKmh * 0.5 / 3600.0;
    return kmDone_;
}

PidContext EngineUnit::contextAt(link::Micros t)
{
    PidContext c;
    const double seconds = static_cast<double>(t - start_) / 1e6;
    c.state = engineStateAt(seconds, seed_);
    const double km = kmAt(seconds);
    c.mil = !stored_.empty();
    c.storedCodes = static_cast<int>(stored_.size());
    const bool cleared = clearedAt_ > 0;
    c.secondsSinceClear = cleared ? seconds - clearedAt_ : kHistorySinceClear + seconds;
    c.kmSinceClear = cleared ? km - kmAtClear_ : kHistoryKmSinceClear + km;
    // The lamp has been on since the misfire was logged, before this engine run.
    c.kmWithMil = c.mil ? kHistoryKmWithMil + km : 0.0;
    c.secondsWithMil = c.mil ? kHistorySecondsWithMil + seconds : 0.0;
    c.warmUpsSinceClear = clearedAt_ > 0 ? 0 : 6;
    return c;
}

std::vector<link::Bytes> EngineUnit::answer(const Request& r)
{
    switch (r.payload.front()) {
    case kCurrentData: return currentData(r);
    case kFreezeFrame: return freezeFrame(r);
    case kStoredCodes: return codes(positiveReply(kStoredCodes), stored_);
    case kClearCodes: return clear(r);
    case kOxygenTests: return oxygenTests(r);
    case kMonitorTests: return monitorTests(r);
    case kPendingCodes: return codes(positiveReply(kPendingCodes), pending_);
    case kVehicleInformation: return vehicleInformation(r);
    case kReadDataByIdentifier: return readNissanData(nissanEngineItems(), r, contextAt(r.time).state);
    case kTesterPresent: return {{positiveReply(kTesterPresent)}};
    // The engine unit speaks for the car when nobody knows a service.
    default: return {negative(r.payload.front(), kServiceNotSupported)};
    }
}

std::vector<link::Bytes> EngineUnit::currentData(const Request& r)
{
    if (r.payload.size() < 2)
        return {negative(kCurrentData, kSubFunctionNotSupported)};
    const std::uint8_t pid = r.payload[1];
    // The maker's own parameters start at B0, clear of the ranges the J1979 bitmaps describe.
    const PidContext ctx = contextAt(r.time);
    const auto data = pid >= 0xB0 ? encodeToyotaPid(pid, ctx) : encodePid(enginePids(), pid, ctx);
    if (!data)
        return lacking(r, kSubFunctionNotSupported);
    link::Bytes reply{positiveReply(kCurrentData), pid};
    reply.insert(reply.end(), data->begin(), data->end());
    return {reply};
}

std::vector<link::Bytes> EngineUnit::freezeFrame(const Request& r)
{
    if (r.payload.size() < 3 || r.payload[2] != 0x00)
        return lacking(r, kSubFunctionNotSupported);
    const std::uint8_t pid = r.payload[1];
    link::Bytes reply{positiveReply(kFreezeFrame), pid, 0x00};
    link::Bytes data;
    if (pid == 0x00) {
        std::vector<std::uint8_t> pids;
        if (freeze_) {
            pids = kFreezePids;
            pids.push_back(0x02);
        }
        data = supportBitmap(pids, 0x00);
    } else if (pid == 0x02) {
        data = codeBytes(freeze_ ? freeze_->code : 0);
    } else if (freeze_ && std::find(kFreezePids.begin(), kFreezePids.end(), pid) != kFreezePids.end()) {
        data = *encodePid(enginePids(), pid, freeze_->context);
    } else {
        return {};
    }
    reply.insert(reply.end(), data.begin(), data.end());
    return {reply};
}

std::vector<link::Bytes> EngineUnit::codes(std::uint8_t reply, const std::vector<TroubleCode>& list) const
{
    // Three codes to a frame, the last padded with zero codes; no codes is one frame of zeros.
    std::vector<link::Bytes> frames;
    for (std::size_t i = 0; i == 0 || i < list.size(); i += 3) {
        link::Bytes f{reply};
        for (std::size_t k = i; k < i + 3; ++k) {
            const auto b = codeBytes(k < list.size() ? list[k] : 0);
            f.insert(f.end(), b.begin(), b.end());
        }
        frames.push_back(f);
    }
    return frames;
}

std::vector<link::Bytes> EngineUnit::clear(const Request& r)
{
    const double seconds = static_cast<double>(r.time - start_) / 1e6;
    stored_.clear();
    pending_.clear();
    freeze_.reset();
    clearedAt_ = std::max(seconds, 1e-6);
    kmAtClear_ = kmAt(seconds);
    return {{positiveReply(kClearCodes)}};
}

std::vector<link::Bytes> EngineUnit::oxygenTests(const Request& r)
{
    if (r.payload.size() < 3)
        return {negative(kOxygenTests, kSubFunctionNotSupported)};
    const std::uint8_t tid = r.payload[1], sensor = r.payload[2];
    if (tid == 0x00) {
        std::vector<std::uint8_t> tids;
        for (const auto& t : kO2Tests)
            tids.push_back(t.tid);
        link::Bytes reply{positiveReply(kOxygenTests), 0x00, sensor};
        const auto map = supportBitmap(tids, 0x00);
        reply.insert(reply.end(), map.begin(), map.end());
        return {reply};
    }
    // The engine has two sensors on bank 1: before and after the catalyst.
    if (sensor < 1 || sensor > 2)
        return {};
    for (const auto& t : kO2Tests)
        if (t.tid == tid)
            return {{positiveReply(kOxygenTests), tid, sensor, t.value[sensor - 1], t.min[sensor - 1],
                     t.max[sensor - 1]}};
    return {};
}

std::vector<link::Bytes> EngineUnit::monitorTests(const Request& r)
{
    if (r.payload.size() < 2)
        return {negative(kMonitorTests, kSubFunctionNotSupported)};
    const std::uint8_t tid = r.payload[1];
    if (tid == 0x00) {
        std::vector<std::uint8_t> tids;
        for (const auto& m : kMonitor)
            tids.push_back(m.tid);
        link::Bytes reply{positiveReply(kMonitorTests), 0x00};
        const auto map = supportBitmap(tids, 0x00);
        reply.insert(reply.end(), map.begin(), map.end());
        return {reply};
    }
    std::vector<link::Bytes> frames;
    for (const auto& m : kMonitor)
        if (m.tid == tid)
            frames.push_back({positiveReply(kMonitorTests), tid, m.cid, static_cast<std::uint8_t>(m.value >> 8),
                              static_cast<std::uint8_t>(m.value), static_cast<std::uint8_t>(m.limit >> 8),
                              static_cast<std::uint8_t>(m.limit)});
    return frames;
}

std::vector<link::Bytes> EngineUnit::vehicleInformation(const Request& r)
{
    if (r.payload.size() < 2)
        return {negative(kVehicleInformation, kSubFunctionNotSupported)};
    switch (r.payload[1]) {
    case 0x00: return {{positiveReply(kVehicleInformation), 0x00, 0x01, 0xC0, 0x00, 0x00, 0x00}};
    case 0x01: return {{positiveReply(kVehicleInformation), 0x01, 0x05}};
    case 0x02: {
        // Seventeen characters after three fill bytes, four bytes to a numbered frame.
        link::Bytes vin(3, 0x00);
        vin.insert(vin.end(), kVin, kVin + std::strlen(kVin));
        std::vector<link::Bytes> frames;
        for (std::size_t i = 0; i < vin.size(); i += 4) {
            link::Bytes f{positiveReply(kVehicleInformation), 0x02, static_cast<std::uint8_t>(i / 4 + 1)};
            f.insert(f.end(), vin.begin() + static_cast<long>(i), vin.begin() + static_cast<long>(i + 4));
            frames.push_back(f);
        }
        return frames;
    }
    default:
        return lacking(r, kSubFunctionNotSupported);
    }
}

} // namespace kvx::sim
