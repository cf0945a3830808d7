#include "link/decode/ToyotaDecoder.h"

namespace kvx::link {

std::string ToyotaDecoder::SensorName(const std::string&, int, int) const { return {}; }

std::string ToyotaDecoder::SensorValue(int, int, const std::string&, int) const { return {}; }

} // namespace kvx::link
