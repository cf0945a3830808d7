#pragma once

#include "link/Hex.h"
#include "sim/EcuModel.h"
#include "sim/VirtualVehicle.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kvx::test {

// A request (payload in hex, matched by its start) and the payloads of the frames the unit sends
// back for it instead of its own answer; none keeps the unit silent.
struct Answer {
    std::string request;
    std::vector<std::string> reply;
};

// A unit of the virtual vehicle with some answers of its own, as another make or another year of
// car gives them; everything else the wrapped unit answers as ever.
class AnsweringUnit : public sim::EcuModel {
public:
    AnsweringUnit(std::unique_ptr<sim::EcuModel> unit, std::vector<Answer> answers)
        : unit_(std::move(unit)), answers_(std::move(answers))
    {
    }
    std::uint8_t address() const override { return unit_->address(); }
    int replyRank() const override { return unit_->replyRank(); }
    std::uint8_t kwpKb1() const override { return unit_->kwpKb1(); }
    std::uint8_t kwpKb1Physical() const override { return unit_->kwpKb1Physical(); }
    std::uint8_t kwpKb2() const override { return unit_->kwpKb2(); }

    std::vector<link::Bytes> answer(const sim::Request& request) override
    {
        const std::string asked = link::toHex(request.payload);
        for (const Answer& a : answers_) {
            if (asked.rfind(a.request, 0) != 0)
                continue;
            std::vector<link::Bytes> frames;
            for (const std::string& frame : a.reply)
                frames.push_back(*link::fromHex(frame));
            return frames;
        }
        return unit_->answer(request);
    }

private:
    std::unique_ptr<sim::EcuModel> unit_;
    std::vector<Answer> answers_;
};

// The built-in car's engine unit (10), for a test unit to wrap.
inline std::unique_ptr<sim::EcuModel> BuiltInEngine(link::Clock& clock, std::uint64_t seed)
{
    return sim::configFor(sim::builtInVehicle(), seed).units.front()(clock, seed);
}

// The usual engine unit (10), with these answers of its own, and the gearbox unit (18) unless
// the car has none.
inline sim::VehicleConfig EngineAnswering(std::vector<Answer> answers, bool withGearbox = true)
{
    sim::VehicleConfig config;
    config.units = {[answers = std::move(answers)](link::Clock& clock, std::uint64_t seed) {
        return std::unique_ptr<sim::EcuModel>(std::make_unique<AnsweringUnit>(BuiltInEngine(clock, seed), answers));
    }};
    if (withGearbox)
        config.units.push_back(sim::configFor(sim::builtInVehicle(), 1).units.at(1));
    return config;
}

} // namespace kvx::test
