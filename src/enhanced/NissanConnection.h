#pragma once

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::enhanced {

// The status texts before each of the nine support requests, and the requests themselves.
inline constexpr int kNissanSupportRequests = 9;

// "10" for the engine unit (module 1), "18" for the transmission unit (module 2).
std::string NissanUnitAddress(int moduleIndex);

// The StartCommunication frame for the session's unit: "81" + address + "FC81" + its checksum.
std::string NissanStartFrame(Session& session);

// A new fast-init wake-up of the session's unit with its start frame (the reconnect flag set).
// True when it answered.
bool ReconnectNissan(Session& session);

// Fast-init wake-up of the Nissan unit, the nine support requests, and the sensor rows in
// GridMode1. True when connected; "INIT FAILED" and false when the unit did not answer.
bool ConnectNissan(Session& session);

// Frames, sends and extracts one support request (keeping the three results in the session) and
// marks what it reports. "" without sending while the link is down.
std::string RequestNissanSupport(Session& session, const std::string& body);

// Marks SupportedPids from a support reply: block from characters 5-6 (read as hex, used as a
// decimal column), rows from the start byte + 1, one per bit of up to four bitmap bytes.
void MarkSupportedNissanSensors(Session& session, const std::string& reply);

// Fills GridMode1 with one ticked row per supported item of blocks 17-20 (rows 32 and 64 are
// range markers and skipped); block 13 registers add a row per named switch bit.
void AddNissanSensors(Session& session);

} // namespace kvx::enhanced
