#pragma once

#include "link/Hex.h"

#include <vector>

namespace kvx::sim {

// A unit's answer rewritten from the K-line form its model gives into the form J1979 takes on CAN,
// where the two differ: trouble codes as one list after a count byte, the VIN as one item after its
// count. (Monitor results carry a unit-and-scaling id on CAN that the K-line form lacks, so the
// unit writes those itself.) Negative replies and everything else pass as they are.
std::vector<link::Bytes> canForm(const std::vector<link::Bytes>& kLinePayloads);

// One message cut into ISO-TP frames of eight bytes: a single frame, or a first frame and its
// consecutive frames; the last frame is padded.
std::vector<link::Bytes> isoTpFrames(const link::Bytes& message);

} // namespace kvx::sim
