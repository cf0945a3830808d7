#pragma once

#include "session/Session.h"

#include <string>

namespace kvx::obd {

using SupportTable = decltype(Session::SupportedPids);

// Marks the identifiers of one support bitmap answer in SupportedPids' column for the service.
// The bitmap is the last four data bytes before the checksum, which holds whether or not the
// service echoes a frame or sensor byte after the range. False for a frame that is not a
// positive answer of the service (nothing marked).
bool MarkSupportBitmap(SupportTable& table, const std::string& frame, int service);

} // namespace kvx::obd
