#pragma once

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// Services 05 and 06 walk test identifiers 1 to 256; these name the range markers (20, 40, ...
// E0) that only announce the next 32 and are never asked for as tests.
constexpr int kLastTestId = 256;
bool IsRangeMarker(int id);

// A test identifier as at least two upper-case hex digits ("01", "A1", "100").
std::string TestIdText(int id);

// Before each request of a test walk the unit is looked after as the keep-alive timer does:
// from the third silent reply a new wake-up is tried ("RECONNECTING..."), and at the fourteenth
// the session is closed and the user told. False ends the walk.
bool ReviveBeforeRequest(Session& session);

// After each request: a silent reply counts, any answer clears the count.
void CountReply(Session& session, const std::string& reply);

} // namespace kvx::obd
