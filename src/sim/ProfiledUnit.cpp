#include "sim/ProfiledUnit.h"

#include "sim/NissanData.h"
#include "sim/ToyotaPids.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace kvx::sim {

using namespace link::kline;

namespace {

// The history of the built-in car before the session: how long ago the codes were last cleared,
// and how far it has gone with the lamp on. Every unit whose items follow the drive shares it.
constexpr double kHistorySinceClear = 3.0 * 3600.0;
constexpr double kHistoryKmSinceClear = 212.0;
constexpr double kHistoryKmWithMil = 37.0;
constexpr double kHistorySecondsWithMil = 2.0 * 3600.0;
constexpr int kHistoryWarmUps = 6;

constexpr std::uint8_t kFirstMakerPid = 0xB0;
constexpr std::size_t kCodesPerFrame = 3;
constexpr std::size_t kVinFill = 3;      // fill bytes before the seventeen characters
constexpr std::size_t kVinPerFrame = 4;  // characters to a numbered frame
constexpr std::uint8_t kMinimumLimit = 0x80; // bit 7 of a component id: the limit is a minimum

link::Bytes codeBytes(TroubleCode c) { return {static_cast<std::uint8_t>(c >> 8), static_cast<std::uint8_t>(c)}; }

std::string hex(std::uint8_t v) { return link::toHex(v); }
std::string hex(std::uint16_t v) { return link::toHex(codeBytes(v)); }

// Three codes to a frame, the last padded with zero codes; no codes is one frame of zeros.
std::vector<link::Bytes> codes(std::uint8_t reply, const std::vector<TroubleCode>& list)
{
    std::vector<link::Bytes> frames;
    for (std::size_t i = 0; i == 0 || i < list.size(); i += kCodesPerFrame) {
        link::Bytes f{reply};
        for (std::size_t k = i; k < i + kCodesPerFrame; ++k) {
            const auto b = codeBytes(k < list.size() ? list[k] : 0);
            f.insert(f.end(), b.begin(), b.end());
        }
        frames.push_back(f);
    }
    return frames;
}

link::Bytes withHead(link::Bytes head, const link::Bytes& data)
{
    head.insert(head.end(), data.begin(), data.end());
    return head;
}

// A ramp's bytes are one big-endian number that climbs from `bytes` to `to` over the period.
link::Bytes rampAt(const ValueSource& v, double seconds)
{
    if (v.periodSeconds <= 0 || v.to.size() != v.bytes.size())
        return v.bytes;
    auto number = [](const link::Bytes& b) {
        double n = 0;
        for (std::uint8_t x : b)
            n = n * 256 + x;
        return n;
    };
    const double share = std::fmod(std::max(seconds, 0.0), v.periodSeconds) / v.periodSeconds;
    const double from = number(v.bytes);
    auto n = static_cast<unsigned long long>(std::llround(from + (number(v.to) - from) * share));
    link::Bytes out(v.bytes.size());
    for (auto b = out.rbegin(); b != out.rend(); ++b, n >>= 8)
        *b = static_cast<std::uint8_t>(n);
    return out;
}

const PidEntry* driveEncoder(std::uint8_t pid)
{
    const auto& table = enginePids();
    const auto it = std::find_if(table.begin(), table.end(), [pid](const PidEntry& e) { return e.pid == pid; });
    return it == table.end() ? nullptr : &*it;
}

const NissanItemCode* nissanDriveItem(std::uint8_t unit, std::uint16_t identifier)
{
    const auto& table = nissanDriveItems(unit);
    const auto it = std::find_if(table.begin(), table.end(),
                                 [identifier](const NissanItemCode& i) { return i.identifier == identifier; });
    return it == table.end() ? nullptr : &*it;
}

std::vector<std::uint8_t> keysOf(const std::map<std::uint8_t, link::Bytes>& m)
{
    std::vector<std::uint8_t> out;
    for (const auto& [k, v] : m)
        out.push_back(k);
    return out;
}

} // namespace

void ProfiledUnit::check(const UnitProfile& profile)
{
    const std::string unit = "unit " + hex(profile.address) + ": ";
    for (const auto& [pid, source] : profile.pids)
        if (source.kind == ValueSource::Kind::Drive && !driveEncoder(pid))
            throw std::invalid_argument(unit + "PID " + hex(pid) + " has no drive values; give it constant or ramp values");
    if (profile.nissanItems)
        for (const auto& [identifier, source] : *profile.nissanItems)
            if (source.kind == ValueSource::Kind::Drive && !nissanDriveItem(profile.address, identifier))
                throw std::invalid_argument(unit + "item " + hex(identifier) +
                                            " has no drive values; give it constant or ramp values");
    if (profile.freezeFrame)
        for (std::uint8_t pid : profile.freezeFrame->pids)
            if (!profile.pids.count(pid))
                throw std::invalid_argument(unit + "the freeze frame holds PID " + hex(pid) +
                                            ", which the unit does not report");
}

ProfiledUnit::ProfiledUnit(link::Clock& clock, std::uint64_t seed, UnitProfile profile, bool speaksForCar)
    : profile_(std::move(profile)), speaksForCar_(speaksForCar), seed_(seed), start_(clock.now()),
      stored_(profile_.stored), pending_(profile_.pending)
{
    if (const auto& ff = profile_.freezeFrame) {
        // Frozen during the drive in which the fault set, with the car's history as it stands now.
        PidContext at = contextAt(start_);
        at.state = engineStateAt(ff->atSeconds, seed_);
        frozen_.emplace();
        for (std::uint8_t pid : ff->pids)
            (*frozen_)[pid] = pidValue(pid, at, ff->atSeconds).value_or(link::Bytes{});
    }
}

double ProfiledUnit::secondsAt(link::Micros t) const { return static_cast<double>(t - start_) / 1e6; }

double ProfiledUnit::kmAt(double seconds)
{
    // Distance is the integral of speed; integrated in small steps as time goes by.
    for (; kmUpTo_ + 0.5 <= seconds; kmUpTo_ += 0.5)
        kmDone_ += engineStateAt(kmUpTo_, seed_).speedKmh * 0.5 / 3600.0;
    return kmDone_;
}

PidContext ProfiledUnit::contextAt(link::Micros t)
{
    PidContext c;
    const double seconds = secondsAt(t);
    c.state = engineStateAt(seconds, seed_);
    const double km = kmAt(seconds);
    c.mil = !stored_.empty();
    c.storedCodes = static_cast<int>(stored_.size());
    const bool cleared = clearedAt_ > 0;
    c.secondsSinceClear = cleared ? seconds - clearedAt_ : kHistorySinceClear + seconds;
    c.kmSinceClear = cleared ? km - kmAtClear_ : kHistoryKmSinceClear + km;
    // The lamp has been on since the fault was logged, before this engine run.
    c.kmWithMil = c.mil ? kHistoryKmWithMil + km : 0.0;
    c.secondsWithMil = c.mil ? kHistorySecondsWithMil + seconds : 0.0;
    c.warmUpsSinceClear = cleared ? 0 : kHistoryWarmUps;
    return c;
}

std::optional<link::Bytes> ProfiledUnit::pidValue(std::uint8_t pid, const PidContext& ctx, double seconds) const
{
    const auto it = profile_.pids.find(pid);
    if (it == profile_.pids.end())
        return std::nullopt;
    switch (it->second.kind) {
    case ValueSource::Kind::Drive: return driveEncoder(pid)->encode(ctx);
    case ValueSource::Kind::Constant: return it->second.bytes;
    case ValueSource::Kind::Ramp: return rampAt(it->second, seconds);
    }
    return std::nullopt;
}

std::vector<link::Bytes> ProfiledUnit::answer(const Request& r)
{
    const std::uint8_t service = r.payload.front();
    std::vector<link::Bytes> frames;
    if (const auto refusal = profile_.refusals.find(service); refusal != profile_.refusals.end())
        frames = {negative(service, refusal->second)};
    else
        frames = serve(r);
    if (!frames.empty() && profile_.pendingFirst.count(service))
        frames.insert(frames.begin(), negative(service, kResponsePending));
    return frames;
}

std::vector<link::Bytes> ProfiledUnit::serve(const Request& r)
{
    switch (r.payload.front()) {
    case kCurrentData: return currentData(r);
    case kFreezeFrame: return profile_.freezeFrame ? freezeFrame(r) : lacking(r, kServiceNotSupported);
    case kStoredCodes: return codes(positiveReply(kStoredCodes), stored_);
    case kClearCodes: return clear(r);
    case kOxygenTests: return oxygenTests(r);
    case kMonitorTests: return monitorTests(r);
    case kPendingCodes: return codes(positiveReply(kPendingCodes), pending_);
    case kVehicleInformation: return vehicleInformation(r);
    case kReadDataByIdentifier: return nissanData(r);
    case kTesterPresent: return {{positiveReply(kTesterPresent)}};
    default:
        if (speaksForCar_)
            return {negative(r.payload.front(), kServiceNotSupported)};
        return lacking(r, kServiceNotSupported);
    }
}

std::vector<link::Bytes> ProfiledUnit::currentData(const Request& r)
{
    if (r.payload.size() < 2)
        return {negative(kCurrentData, kSubFunctionNotSupported)};
    const std::uint8_t pid = r.payload[1];
    const PidContext ctx = contextAt(r.time);
    std::optional<link::Bytes> data;
    if (pid >= kFirstMakerPid && !profile_.toyotaRanges.empty()) {
        // The maker's own parameters start at B0, clear of the ranges the J1979 bitmaps describe.
        data = encodeToyotaPid(pid, ctx, profile_.toyotaRanges);
    } else if (pid % 0x20 == 0) {
        std::vector<std::uint8_t> pids;
        for (const auto& [p, source] : profile_.pids)
            pids.push_back(p);
        data = rangeBitmap(pids, pid);
    } else {
        data = pidValue(pid, ctx, secondsAt(r.time));
    }
    if (!data)
        return lacking(r, kSubFunctionNotSupported);
    return {withHead({positiveReply(kCurrentData), pid}, *data)};
}

std::vector<link::Bytes> ProfiledUnit::freezeFrame(const Request& r) const
{
    if (r.payload.size() < 3 || r.payload[2] != 0x00)
        return lacking(r, kSubFunctionNotSupported);
    const std::uint8_t pid = r.payload[1];
    const link::Bytes head{positiveReply(kFreezeFrame), pid, 0x00};
    if (pid == 0x00) {
        std::vector<std::uint8_t> pids;
        if (frozen_) {
            pids = keysOf(*frozen_);
            pids.push_back(0x02);
        }
        return {withHead(head, supportBitmap(pids, 0x00))};
    }
    if (pid == 0x02)
        return {withHead(head, codeBytes(frozen_ ? profile_.freezeFrame->code : 0))};
    if (!frozen_ || !frozen_->count(pid))
        return {};
    return {withHead(head, frozen_->at(pid))};
}

std::vector<link::Bytes> ProfiledUnit::clear(const Request& r)
{
    const double seconds = secondsAt(r.time);
    stored_.clear();
    pending_.clear();
    frozen_.reset();
    clearedAt_ = std::max(seconds, 1e-6);
    kmAtClear_ = kmAt(seconds);
    return {{positiveReply(kClearCodes)}};
}

std::vector<link::Bytes> ProfiledUnit::oxygenTests(const Request& r) const
{
    const auto& tests = profile_.o2Tests;
    if (tests.empty())
        return lacking(r, kServiceNotSupported);
    if (r.payload.size() < 3)
        return {negative(kOxygenTests, kSubFunctionNotSupported)};
    const std::uint8_t tid = r.payload[1], sensor = r.payload[2];
    if (tid == 0x00) {
        std::vector<std::uint8_t> tids;
        for (const auto& t : tests)
            tids.push_back(t.tid);
        return {withHead({positiveReply(kOxygenTests), 0x00, sensor}, supportBitmap(tids, 0x00))};
    }
    for (const auto& t : tests)
        if (t.tid == tid && t.sensor == sensor)
            return {{positiveReply(kOxygenTests), tid, sensor, t.value, t.min, t.max}};
    return {};
}

std::vector<link::Bytes> ProfiledUnit::monitorTests(const Request& r) const
{
    const auto& tests = profile_.monitorTests;
    if (tests.empty())
        return lacking(r, kServiceNotSupported);
    if (r.payload.size() < 2)
        return {negative(kMonitorTests, kSubFunctionNotSupported)};
    const std::uint8_t tid = r.payload[1];
    // 00, 20, 40 ... ask which tests (on CAN, which monitors) the range holds.
    if (tid % 0x20 == 0) {
        std::vector<std::uint8_t> tids;
        for (const auto& m : tests)
            tids.push_back(m.tid);
        const auto bitmap = rangeBitmap(tids, tid);
        if (!bitmap)
            return lacking(r, kSubFunctionNotSupported);
        return {withHead({positiveReply(kMonitorTests), tid}, *bitmap)};
    }
    if (r.can)
        return {monitorRecords(tid)};
    std::vector<link::Bytes> frames;
    for (const auto& m : tests)
        if (m.tid == tid)
            frames.push_back({positiveReply(kMonitorTests), tid, m.cid, static_cast<std::uint8_t>(m.value >> 8),
                              static_cast<std::uint8_t>(m.value), static_cast<std::uint8_t>(m.limit >> 8),
                              static_cast<std::uint8_t>(m.limit)});
    return frames;
}

// On CAN a monitor's tests come in one message, a record each: test id, unit-and-scaling id,
// value, minimum and maximum; a test with one limit gets the widest other one.
link::Bytes ProfiledUnit::monitorRecords(std::uint8_t obdmid) const
{
    struct Record {
        std::uint8_t test, scaling;
        std::uint16_t value, min = 0x0000, max = 0xFFFF;
    };
    std::vector<Record> records;
    for (const auto& m : profile_.monitorTests) {
        if (m.tid != obdmid)
            continue;
        const std::uint8_t test = m.cid & ~kMinimumLimit;
        auto r = std::find_if(records.begin(), records.end(), [&](const Record& x) { return x.test == test; });
        if (r == records.end())
            r = records.insert(records.end(), Record{test, m.scaling, m.value});
        r->value = m.value;
        (m.cid & kMinimumLimit ? r->min : r->max) = m.limit;
    }
    link::Bytes message{positiveReply(kMonitorTests)};
    for (const Record& r : records) {
        message.insert(message.end(), {obdmid, r.test, r.scaling});
        for (std::uint16_t v : {r.value, r.min, r.max}) {
            message.push_back(static_cast<std::uint8_t>(v >> 8));
            message.push_back(static_cast<std::uint8_t>(v));
        }
    }
    return message;
}

std::vector<link::Bytes> ProfiledUnit::vehicleInformation(const Request& r) const
{
    const std::string& vin = profile_.vin;
    if (vin.empty())
        return lacking(r, kServiceNotSupported);
    if (r.payload.size() < 2)
        return {negative(kVehicleInformation, kSubFunctionNotSupported)};
    link::Bytes text(kVinFill, 0x00);
    text.insert(text.end(), vin.begin(), vin.end());
    text.resize((text.size() + kVinPerFrame - 1) / kVinPerFrame * kVinPerFrame, 0x00);
    const auto count = static_cast<std::uint8_t>(text.size() / kVinPerFrame);
    switch (r.payload[1]) {
    // One message of support bits: the VIN's message count (01) and the VIN (02).
    case 0x00: return {{positiveReply(kVehicleInformation), 0x00, 0x01, 0xC0, 0x00, 0x00, 0x00}};
    case 0x01: return {{positiveReply(kVehicleInformation), 0x01, count}};
    case 0x02: {
        std::vector<link::Bytes> frames;
        for (std::size_t i = 0; i < text.size(); i += kVinPerFrame) {
            link::Bytes f{positiveReply(kVehicleInformation), 0x02, static_cast<std::uint8_t>(i / kVinPerFrame + 1)};
            f.insert(f.end(), text.begin() + static_cast<long>(i), text.begin() + static_cast<long>(i + kVinPerFrame));
            frames.push_back(f);
        }
        return frames;
    }
    default:
        return lacking(r, kSubFunctionNotSupported);
    }
}

std::vector<link::Bytes> ProfiledUnit::nissanData(const Request& r)
{
    if (!profile_.nissanItems)
        return lacking(r, kServiceNotSupported);
    const auto& items = *profile_.nissanItems;
    const double seconds = secondsAt(r.time);
    const EngineState state = engineStateAt(seconds, seed_);
    std::vector<std::uint16_t> identifiers;
    for (const auto& [identifier, source] : items)
        identifiers.push_back(identifier);
    return readNissanData(identifiers, r, [&](std::uint16_t identifier) {
        const ValueSource& source = items.at(identifier);
        switch (source.kind) {
        case ValueSource::Kind::Drive: return nissanDriveItem(profile_.address, identifier)->encode(state);
        case ValueSource::Kind::Constant: return source.bytes;
        case ValueSource::Kind::Ramp: return rampAt(source, seconds);
        }
        return source.bytes;
    });
}

} // namespace kvx::sim
