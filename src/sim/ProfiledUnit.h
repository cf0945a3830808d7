#pragma once

#include "link/Clock.h"
#include "sim/EcuModel.h"
#include "sim/PidTable.h"
#include "sim/VehicleProfile.h"

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace kvx::sim {

// A control unit that answers what its profile holds: J1979 services 01 to 09, tester present,
// the Nissan items of service 0x22 and the Toyota parameters above B0, with the refusals and the
// "response pending" replies its profile names. Values follow the built-in car's drive, stay
// constant or ramp, as each item's source says.
class ProfiledUnit : public EcuModel {
public:
    // speaksForCar: the unit refuses a service no unit knows even when asked functionally, so the
    // tester hears one refusal rather than nothing. The profile has passed check().
    ProfiledUnit(link::Clock& clock, std::uint64_t seed, UnitProfile profile, bool speaksForCar);

    // Throws std::invalid_argument, in plain words, when an item follows the drive but the built-in
    // car has no such item, or the freeze frame holds a parameter the unit does not report.
    static void check(const UnitProfile& profile);

    std::uint8_t address() const override { return profile_.address; }
    std::vector<link::Bytes> answer(const Request& request) override;
    int replyRank() const override { return profile_.replyRank; }
    std::uint8_t kwpKb1() const override { return profile_.kwpKb1; }
    std::uint8_t kwpKb1Physical() const override { return profile_.kwpKb1Physical; }
    std::uint8_t kwpKb2() const override { return profile_.kwpKb2; }

private:
    std::vector<link::Bytes> serve(const Request& r);
    double secondsAt(link::Micros t) const;
    PidContext contextAt(link::Micros t);
    double kmAt(double seconds);
    std::optional<link::Bytes> pidValue(std::uint8_t pid, const PidContext& ctx, double seconds) const;
    std::vector<link::Bytes> currentData(const Request& r);
    std::vector<link::Bytes> freezeFrame(const Request& r) const;
    std::vector<link::Bytes> clear(const Request& r);
    std::vector<link::Bytes> oxygenTests(const Request& r) const;
    std::vector<link::Bytes> monitorTests(const Request& r) const;
    link::Bytes monitorRecords(std::uint8_t obdmid) const;
    std::vector<link::Bytes> vehicleInformation(const Request& r) const;
    std::vector<link::Bytes> nissanData(const Request& r);

    UnitProfile profile_;
    bool speaksForCar_;
    std::uint64_t seed_;
    link::Micros start_;
    std::vector<TroubleCode> stored_;
    std::vector<TroubleCode> pending_;
    // The frozen values by parameter, as they were when the fault set; absent once cleared.
    std::optional<std::map<std::uint8_t, link::Bytes>> frozen_;
    double clearedAt_ = 0; // seconds at the last clear; 0 while the codes were never cleared here
    double kmDone_ = 0;    // distance integrated up to kmUpTo_
    double kmUpTo_ = 0;
    double kmAtClear_ = 0;
};

} // namespace kvx::sim
