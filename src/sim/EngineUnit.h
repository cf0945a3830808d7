#pragma once

#include "link/Clock.h"
#include "sim/EcuModel.h"
#include "sim/NissanData.h"
#include "sim/PidTable.h"
#include "sim/VehicleProfile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kvx::sim {

// The engine control unit (0x10): a petrol engine with a misfire history, a tired catalyst and a
// lean long-term trim, answering the J1979 services 01 to 09, the Toyota parameters above B0 of
// service 01 and the Nissan items of service 0x22.
class EngineUnit : public EcuModel {
public:
    EngineUnit(link::Clock& clock, std::uint64_t seed);

    std::uint8_t address() const override { return 0x10; }
    std::vector<link::Bytes> answer(const Request& request) override;
    int replyRank() const override { return 1; }
    std::uint8_t kwpKb1Physical() const override { return kNissanKb1; }

    static constexpr const char* kVin = "KVX1E6TS4R0000913";

private:
    struct FreezeFrame {
        TroubleCode code;
        PidContext context;
    };

    PidContext contextAt(link::Micros t);
    double kmAt(double seconds);
    std::vector<link::Bytes> currentData(const Request& r);
    std::vector<link::Bytes> freezeFrame(const Request& r);
    std::vector<link::Bytes> codes(std::uint8_t reply, const std::vector<TroubleCode>& list) const;
    std::vector<link::Bytes> clear(const Request& r);
    std::vector<link::Bytes> oxygenTests(const Request& r);
    std::vector<link::Bytes> monitorTests(const Request& r);
    std::vector<link::Bytes> vehicleInformation(const Request& r);

    link::Clock& clock_;
    std::uint64_t seed_;
    link::Micros start_;
    std::vector<TroubleCode> stored_;
    std::vector<TroubleCode> pending_;
    std::optional<FreezeFrame> freeze_;
    double clearedAt_ = 0;        // engine seconds at the last clear
    double kmDone_ = 0;           // distance integrated up to kmUpTo_
    double kmUpTo_ = 0;
    double kmAtClear_ = 0;
};

} // namespace kvx::sim
