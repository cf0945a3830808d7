#pragma once

#include <string>
#include <vector>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// Fills cmbMode5 with the sensors the unit has and chooses the first. A connected unit that
// declared its sensor layout (PID 13, or 1D on a four-bank engine) is asked for it; otherwise,
// or when it stays silent, every name of the layout is listed.
void FillO2SensorList(Session& session);

// The sensor names a layout byte marks present. PID 13: bits 0-3 are bank 1 sensors 1-4, bits
// 4-7 bank 2. PID 1D: two bits a bank, banks 1 to 4.
std::vector<std::string> PresentO2Sensors(int layoutByte, bool fourBanks);

} // namespace kvx::obd
