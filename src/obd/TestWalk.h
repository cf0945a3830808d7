#pragma once

#include <functional>
#include <string>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// Services 05 and 06 walk test identifiers 1 to 256; every 0x20th (20, 40, ... E0, 100) only
// announces the next 32 and is never asked for as a test.
constexpr int kLastTestId = 256;

// One answer of a walk: the test's number, its two hex digits and a message of the engine unit.
using TestAnswer = std::function<void(int tid, const std::string& id, const std::string& message)>;

// Asks every test of the service that SupportedPids marks (range markers left out), the request
// being the service, the test's two digits and `suffix`, with "TEST ID...NN" in panel 1. Each
// engine-unit message of a reply goes to `answer`. Before each request the unit is looked after as
// the keep-alive tick does: from the third silent reply a new wake-up, and at the fourteenth the
// session closed and the user told, which ends the walk.
void WalkTests(Session& session, const std::string& headerByte1, const std::string& headerByte2, int service,
               const std::string& suffix, const TestAnswer& answer);

} // namespace kvx::obd
