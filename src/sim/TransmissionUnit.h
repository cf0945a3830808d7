#pragma once

#include "link/Clock.h"
#include "sim/EcuModel.h"
#include "sim/NissanData.h"

namespace kvx::sim {

// The automatic gearbox's unit (0x18): a handful of service 01 parameters, no codes of its own,
// and the Nissan items of service 0x22.
// It is quicker than the engine unit, so its reply comes first.
class TransmissionUnit : public EcuModel {
public:
    TransmissionUnit(link::Clock& clock, std::uint64_t seed);

    std::uint8_t address() const override { return 0x18; }
    std::vector<link::Bytes> answer(const Request& request) override;
    int replyRank() const override { return 0; }
    std::uint8_t kwpKb1Physical() const override { return kNissanKb1; }

private:
    std::uint64_t seed_;
    link::Micros start_;
};

} // namespace kvx::sim
