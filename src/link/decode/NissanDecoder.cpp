#include "link/decode/NissanDecoder.h"

namespace kvx::link {

std::string NissanDecoder::SensorName(const std::string&, int) const { return {}; }

std::string NissanDecoder::SensorValue(const std::string&, int, int, int) const { return {}; }

} // namespace kvx::link
