#pragma once

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// Texts of the failed-connection boxes and the status bar.
inline constexpr const char* kFailedCommunication = "Failed Communication";
inline constexpr const char* kNegativeResponseText = "Negative Response From ECU.";
inline constexpr const char* kIncompleteReplyText =
    "Response was not completed.  Please adjust your P3 Value Higher";
inline constexpr const char* kNoReplyText =
    "No Response From ECU.  Please Try Other Type Protocol Then Recheck";
inline constexpr const char* kInitFailed = "INIT FAILED";

// Opens a generic OBD-II session over the protocol of the settings (or each protocol in turn for
// "Try All"), checks the first answer, discovers the supported parameters and prepares the
// screen. True when the session is open. A link fault is shown and leaves the session closed.
bool ConnectEcu(Session& session);

// Sends header 1 + header 2 + "F1" + service + parameter through the request cycle, hands every
// message of the reply to DecodeSupportedPids with decoderService, and returns the whole reply.
// Sends nothing and returns "" while the link is down.
std::string SendRequest(Session& session, const std::string& headerByte1, const std::string& headerByte2,
                        const std::string& service, const std::string& parameter,
                        const std::string& decoderService);

// The KWP2000 negative-response test of the connection check and the keep-alive tick: characters
// 9-10 are "7F" behind a first byte 80/C0, or behind 83/C3 (where a short frame holds the
// service's own byte there; the test reads the same place for both forms all the same).
bool IsNegativeResponse(const std::string& reply);

// Why the first answer to "01" "00" is refused, or "" when it is accepted: 14 characters or
// fewer is an incomplete reply.
std::string FirstReplyProblem(const std::string& reply);

// Wakes the unit up again with the session's settings (the reconnect flag set). True when it
// answered.
bool ReconnectEcu(Session& session);

// Sets the toolbar's Connect / Disconnect buttons and the service buttons for a closed or an
// open session; the diagnostic services need the generic module as well.
void SetToolbarConnected(Session& session, bool connected);

} // namespace kvx::obd
