#pragma once

#include <string>
#include <string_view>

namespace kvx::link::decode {

// The readable text of a service 41 information message, one fact per line ("\n"): monitor
// status (01, 41) with each monitor's state, the OBD standard (1C), the oxygen sensors present by
// bank (13, 1D). Other parameters give their description and metric value on one line.
std::string formatInfoValue(std::string_view message);

} // namespace kvx::link::decode
