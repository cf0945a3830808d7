#include "link/EnginePort.h"

#include <string>

namespace kvx::link {

EnginePort::EnginePort(WireFactory& wires, InterfaceType interface, std::function<void()> onClose,
                       std::function<void()> onExchangeEnd)
    : wires_(wires), interface_(interface), onClose_(std::move(onClose)), onExchangeEnd_(std::move(onExchangeEnd))
{
}

EnginePort::~EnginePort()
{
    if (wire_ && wire_->isOpen())
        wire_->close();
}

bool EnginePort::open(int port)
{
    if (wire_ && wire_->isOpen() && port == number_)
        return false;
    closeNow();
    wire_ = wires_ ? wires_(port, interface_) : nullptr;
    if (!wire_)
        throw LinkError(LinkError::Kind::PortOpen, "There is no port " + std::to_string(port) + ".");
    wire_->open();
    number_ = port;
    return true;
}

std::string EnginePort::describe() const
{
    const std::string name = wire_ ? wire_->name() : std::string();
    return name.empty() ? "port " + std::to_string(number_) : name;
}

bool EnginePort::isOpen() const { return wire_ && wire_->isOpen() && !closePending_; }

void EnginePort::close()
{
    if (busy_) {
        closePending_ = true;
        return;
    }
    closeNow();
}

void EnginePort::closeNow()
{
    closePending_ = false;
    if (onClose_)
        onClose_();
    if (wire_ && wire_->isOpen())
        wire_->close();
    wire_.reset();
    number_ = -1;
}

EnginePort::Exchange::Exchange(EnginePort& port) : port_(port)
{
    if (port_.busy_)
        throw LinkError(LinkError::Kind::BadRequest, "The link is busy with another exchange; try again when it ends.");
    port_.busy_ = true;
}

EnginePort::Exchange::~Exchange()
{
    port_.busy_ = false;
    if (port_.onExchangeEnd_)
        port_.onExchangeEnd_();
    if (port_.closePending_)
        port_.closeNow();
}

} // namespace kvx::link
