#pragma once

#include "link/Clock.h"
#include "link/Hex.h"
#include "link/Wire.h"
#include "sim/VirtualVehicle.h"

#include <memory>

namespace kvx::sim::test {

using link::Bytes;
using link::LineKind;
using link::ms;
using link::TraceOrigin;

// Drives the virtual vehicle's wire the way a plain K-line tester would, on virtual time.
struct BusTester {
    link::VirtualClock clock{link::ms(1000)};
    VirtualVehicle vehicle;
    std::unique_ptr<link::Wire> wire;

    explicit BusTester(VehicleConfig config = {}) : vehicle(clock, std::move(config)), wire(vehicle.makeWire())
    {
        wire->open();
        wire->setBaud(10400);
    }

    // Sends an address at 5 baud: start bit low, eight bits LSB first, stop bit high.
    void sendFiveBaud(std::uint8_t address, link::Micros bit = link::ms(200))
    {
        const link::Micros t0 = clock.now();
        bool low = true;
        wire->setBreak(true);
        for (int i = 1; i <= 9; ++i) {
            const bool bitLow = i <= 8 ? !((address >> (i - 1)) & 1) : false;
            if (bitLow != low) {
                clock.sleepUntil(t0 + i * bit);
                wire->setBreak(bitLow);
                low = bitLow;
            }
        }
        clock.sleepUntil(t0 + 10 * bit);
    }

    Bytes readFor(link::Micros span)
    {
        const link::Micros deadline = clock.now() + span;
        Bytes out;
        std::uint8_t buf[64];
        while (std::size_t n = wire->read(buf, deadline))
            out.insert(out.end(), buf, buf + n);
        return out;
    }

    // Everything until the line has been quiet for P2max.
    Bytes readUntilQuiet(link::Micros quiet = link::ms(60))
    {
        Bytes out;
        std::uint8_t buf[64];
        while (std::size_t n = wire->read(buf, clock.now() + quiet))
            out.insert(out.end(), buf, buf + n);
        return out;
    }

    // A whole 5-baud wake-up with the tester's side done right; returns the unit's bytes.
    Bytes slowInit()
    {
        sendFiveBaud(0x33);
        Bytes got = readFor(link::ms(400));
        if (got.size() != 3)
            return got;
        clock.sleepFor(link::ms(30));
        const std::uint8_t inv = static_cast<std::uint8_t>(~got[2]);
        wire->write(Bytes{inv});
        const Bytes rest = readFor(link::ms(100));
        got.insert(got.end(), rest.begin(), rest.end());
        return got; // sync, KB1, KB2, echo of ~KB2, ~address
    }

    // The fast-init pulse followed by StartCommunication 50 ms after the low edge.
    Bytes fastInit(const Bytes& start = {0xC1, 0x33, 0xF1, 0x81, 0x66}, link::Micros low = link::ms(25))
    {
        clock.sleepFor(link::ms(300));
        const link::Micros t0 = clock.now();
        wire->setBreak(true);
        clock.sleepUntil(t0 + low);
        wire->setBreak(false);
        clock.sleepUntil(t0 + link::ms(50));
        return request(start);
    }

    // Writes a frame (checksum added when asked), then returns what came back after the echo.
    Bytes request(Bytes frame, bool addChecksum = false)
    {
        if (addChecksum)
            frame.push_back(link::checksum(frame));
        wire->write(frame);
        Bytes got = readUntilQuiet();
        if (got.size() >= frame.size() && Bytes(got.begin(), got.begin() + static_cast<long>(frame.size())) == frame)
            got.erase(got.begin(), got.begin() + static_cast<long>(frame.size()));
        return got;
    }
    Bytes iso(const Bytes& payload)
    {
        Bytes f{0x68, 0x6A, 0xF1};
        f.insert(f.end(), payload.begin(), payload.end());
        return request(f, true);
    }
};

// The units' frames since a time, split where the line was quiet for longer than P1max.
inline std::vector<Bytes> unitFrames(const BusRecord& record, link::Micros from, link::Micros gap = link::ms(21))
{
    std::vector<Bytes> frames;
    link::Micros last = -1;
    for (const auto& e : record.bytes(TraceOrigin::Ecu)) {
        if (e.time < from)
            continue;
        if (last < 0 || e.time - last > gap)
            frames.emplace_back();
        frames.back().push_back(e.byte);
        last = e.time;
    }
    return frames;
}

inline bool checksumOk(const Bytes& f)
{
    return f.size() >= 2 && link::checksum(Bytes(f.begin(), f.end() - 1)) == f.back();
}

} // namespace kvx::sim::test
