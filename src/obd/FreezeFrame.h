#pragma once

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// The columns of a txtMode2 paragraph, in characters: the description, then each value.
inline constexpr std::size_t kFreezeDescriptionWidth = 40;
inline constexpr std::size_t kFreezeValueWidth = 20;

// The "FREEZE FRAME DATA" tab's button: learns which parameters the unit keeps in the frame
// chosen in cmbFrame, then reads them into txtMode2.
void RequestFreezeFrame(Session& session);

// Reads every service 02 parameter the unit declared, one paragraph each: the description in a
// 40-character column, then the two values in red, 20 characters each.
void ReadFreezeFrame(Session& session, const std::string& headerByte1, const std::string& headerByte2);

} // namespace kvx::obd
