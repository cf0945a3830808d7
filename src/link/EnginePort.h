#pragma once

#include "link/LinkError.h"
#include "link/Protocol.h"
#include "link/WakeUp.h"
#include "link/Wire.h"

#include <functional>
#include <memory>

namespace kvx::link {

// The port an engine drives, and the rules every engine keeps with it: one exchange at a time, a
// close asked for during an exchange happens when the exchange ends, and a wake-up that fails
// frees the port.
class EnginePort {
public:
    // onClose drops the engine's session with the port; onExchangeEnd runs after each exchange.
    EnginePort(WireFactory& wires, InterfaceType interface, std::function<void()> onClose,
               std::function<void()> onExchangeEnd = {});
    ~EnginePort();
    EnginePort(const EnginePort&) = delete;
    EnginePort& operator=(const EnginePort&) = delete;

    // Opens the port unless it stands open on the same number already; true when opened now.
    bool open(int port);
    Wire& wire() { return *wire_; }
    // The open port as the user knows it: its device, or "port N".
    std::string describe() const;
    // Open, and no close waiting for the exchange to end.
    bool isOpen() const;
    // Closes at once, or at the end of the running exchange.
    void close();

    // Marks one exchange; a second one while it runs is refused.
    class Exchange {
    public:
        explicit Exchange(EnginePort& port);
        ~Exchange();
        Exchange(const Exchange&) = delete;
        Exchange& operator=(const Exchange&) = delete;

    private:
        EnginePort& port_;
    };

    // Runs a wake-up as one exchange. A wake-up that fails leaves no session to keep the port for,
    // so it is freed at once for the user's next try; only a re-wake of a standing session keeps
    // it, since its caller goes on counting silent requests until it gives the session up. A link
    // error frees it too.
    template <typename WakeUp>
    WakeUpResult wakeUp(bool reconnect, WakeUp&& wake)
    {
        Exchange exchange(*this);
        try {
            const WakeUpResult r = wake();
            if (!r.ok && !reconnect)
                closeNow();
            return r;
        } catch (const LinkError&) {
            closeNow();
            throw;
        }
    }

private:
    void closeNow();

    WireFactory& wires_;
    InterfaceType interface_;
    std::function<void()> onClose_;
    std::function<void()> onExchangeEnd_;
    std::unique_ptr<Wire> wire_;
    int number_ = -1;
    bool busy_ = false;
    bool closePending_ = false;
};

} // namespace kvx::link
