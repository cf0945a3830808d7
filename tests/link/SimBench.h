#pragma once

#include "link/LinkSession.h"
#include "sim/VirtualVehicle.h"

#include <algorithm>
#include <memory>

namespace kvx::test {

// A LinkSession on a virtual vehicle in virtual time, with the bus record at hand.
struct SimBench {
    explicit SimBench(sim::VehicleConfig config = {})
        : vehicle(clock, std::move(config)), link([this](int, link::InterfaceType) { return vehicle.makeWire(); }, clock)
    {
        link.SetP3Delay(60);
        link.SetP4Delay(5);
    }

    bool wake(int protocol, const std::string& startFrame = "", bool reconnect = false)
    {
        return link.InitializeEcu(startFrame.empty() ? "33" : "", 10400, 0, protocol, startFrame, reconnect, result);
    }

    std::string ask(const std::string& request) { return link.DecodeReply(link.Transact(link.EncodeRequest(request))); }

    std::vector<sim::BusEvent> bytes(link::TraceOrigin origin) const { return vehicle.record().bytes(origin); }

    link::VirtualClock clock{1'000'000};
    sim::VirtualVehicle vehicle;
    link::LinkSession link;
    std::string result;
};

} // namespace kvx::test
