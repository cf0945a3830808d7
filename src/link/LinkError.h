#pragma once

#include <stdexcept>
#include <string>

namespace kvx::link {

// A failure of the call itself (port, cable, echo). An ECU that stays silent is never an error:
// it is an empty reply.
class LinkError : public std::runtime_error {
public:
    enum class Kind { PortOpen, PortLost, BaudRefused, NoEcho, Collision, BadRequest, Adapter };
    LinkError(Kind kind, const std::string& message) : std::runtime_error(message), kind_(kind) {}
    Kind kind() const { return kind_; }

private:
    Kind kind_;
};

} // namespace kvx::link
