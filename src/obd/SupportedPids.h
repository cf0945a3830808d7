#pragma once

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// Reads one support-bitmap message ("01" or "02" as service): adds its source unit to cmbModule
// (a new unit becomes the shown entry and EcuAddress) and marks the parameters whose bits are set
// in SupportedPids' column for the service. Returns the message's source address ("" for a
// message too short to carry one, which changes nothing).
std::string DecodeSupportedPids(Session& session, const std::string& message, const std::string& service);

// Clears entries 0 to lastPid of the service's column of SupportedPids.
void ClearSupportedPids(Session& session, int service, int lastPid = 96);

// The oxygen-sensor layout the unit declared in service 01: "1D" (four banks, which wins when both
// are declared), "13" (two banks) or "". The decoder names sensor parameters by it.
std::string O2Layout(const Session& session);

// Asks for the "00" bitmap of service 01, then "20" and "40" when the bitmap before marked them,
// with "REQUESTING...NN" shown before each when showProgress is set. Returns the reply to "00".
std::string RequestSupportBitmaps(Session& session, bool showProgress);

} // namespace kvx::obd
