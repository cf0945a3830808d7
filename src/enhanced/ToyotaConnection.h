#pragma once

namespace kvx {
struct Session;
}

namespace kvx::enhanced {

// The generic negotiation with the B0, C0 and E0 support requests, then the Toyota rows in
// GridMode1 and cmbPid. True when connected.
bool ConnectToyota(Session& session);

// One ticked row (and one cmbPid entry) per named sub-value of each supported parameter B1-FF.
void AddToyotaSensors(Session& session);

} // namespace kvx::enhanced
