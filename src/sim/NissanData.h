#pragma once

#include "link/Hex.h"
#include "sim/DriveProfile.h"
#include "sim/EcuModel.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace kvx::sim {

// KB1 of a Nissan unit woken by a StartCommunication addressed to it: headers without addresses,
// the length in the format byte (HB0 and AL0 set, odd parity).
constexpr std::uint8_t kNissanKb1 = 0xE5;

// One data item of service 0x22: its identifier (block byte, then low byte) and its bytes now.
struct NissanItemCode {
    std::uint16_t identifier;
    link::Bytes (*encode)(const EngineState&);
};

// The built-in car's items, following its drive: the gearbox unit's (0x18) or the engine unit's
// (any other address).
const std::vector<NissanItemCode>& nissanDriveItems(std::uint8_t unit);

// The answer to "22 II II 04 01". Identifiers BB00, BB20 and BB40 ask which of the next 32
// identifiers the unit has (bit 7 of the first byte is the next one up); BB20 and BB40 are also
// set when the range after them has items, and a range without items gives four zero bytes.
// Other identifiers answer "62 II II" and the item's bytes; an unknown one is refused (7F 22 31).
// valueOf gives the bytes of one of the unit's identifiers now.
std::vector<link::Bytes> readNissanData(const std::vector<std::uint16_t>& identifiers, const Request& request,
                                        const std::function<link::Bytes(std::uint16_t)>& valueOf);

} // namespace kvx::sim
