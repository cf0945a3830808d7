#include "link/LinkError.h"
#include "sim/VirtualVehicle.h"

#include <algorithm>

namespace kvx::sim {

namespace {

// The tester's end of the simulated K-line: what a cable and its interface would give the link.
class VehicleWire final : public link::Wire {
public:
    explicit VehicleWire(VirtualVehicle& vehicle) : vehicle_(vehicle) {}

    void open() override { open_ = true; }
    void close() override
    {
        open_ = false;
        pending_.clear();
    }
    bool isOpen() const override { return open_; }

    void setBaud(int baud) override
    {
        requireOpen();
        if (baud <= 0)
            throw link::LinkError(link::LinkError::Kind::BaudRefused,
                                  "The baud rate " + std::to_string(baud) + " is not a rate.");
        vehicle_.setBaud(baud);
    }

    void setBreak(bool on) override
    {
        requireOpen();
        vehicle_.testerBreak(on);
    }

    void write(std::span<const std::uint8_t> bytes) override
    {
        requireOpen();
        vehicle_.testerWrite(link::Bytes(bytes.begin(), bytes.end()));
    }

    std::size_t read(std::span<std::uint8_t> buf, link::Micros deadline) override
    {
        requireOpen();
        link::Clock& clock = vehicle_.clock();
        for (;;) {
            vehicle_.settle(clock.now());
            const link::Bytes got = vehicle_.takeReceived();
            pending_.insert(pending_.end(), got.begin(), got.end());
            if (!pending_.empty() || buf.empty()) {
                const std::size_t n = std::min(buf.size(), pending_.size());
                std::copy_n(pending_.begin(), n, buf.begin());
                pending_.erase(pending_.begin(), pending_.begin() + static_cast<long>(n));
                return n;
            }
            if (clock.now() >= deadline)
                return 0;
            const auto next = vehicle_.nextEvent();
            clock.sleepUntil(next && *next < deadline ? *next : deadline);
        }
    }

    void flushInput() override
    {
        requireOpen();
        vehicle_.settle(vehicle_.clock().now());
        vehicle_.takeReceived();
        pending_.clear();
    }

private:
    void requireOpen() const
    {
        if (!open_)
            throw link::LinkError(link::LinkError::Kind::PortOpen, "The virtual vehicle's port is not open.");
    }

    VirtualVehicle& vehicle_;
    link::Bytes pending_;
    bool open_ = false;
};

} // namespace

std::unique_ptr<link::Wire> VirtualVehicle::makeWire() { return std::make_unique<VehicleWire>(*this); }

} // namespace kvx::sim
