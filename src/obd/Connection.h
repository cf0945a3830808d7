#pragma once

#include <functional>
#include <string>

namespace kvx {
struct Session;
class TimerModel;
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

// What a module asks once the generic negotiation has woken its unit, and what it shows then.
struct Negotiation {
    // Entries 0 to this of SupportedPids' service 01 column are cleared after the wake-up.
    int lastClearedPid = 96;
    // Asks which parameters the unit supports. False when the answer refused the session (it has
    // been closed and the user told).
    std::function<bool(Session&)> discover;
    // Fills GridMode1 and the lists of the main window from what was discovered.
    std::function<void(Session&)> fillScreen;
};

// The negotiation every J1979 module shares: the wake-up over the chosen protocol (or each in
// turn for "Try All"), the header bytes, the KWP2000 negative-reply check, then the module's
// discovery, the keep-alive timer and the screen. True when the session is open.
bool Negotiate(Session& session, const Negotiation& negotiation);

// Ends a failed wake-up: the link marked down, "INIT FAILED", the module's keep-alive timer
// stopped at the settings' interval, the toolbar back in its not-connected state.
void ReportInitFailed(Session& session, TimerModel& keepAlive);

// Closes a session whose first answers refused it and tells the user why.
void RefuseConnection(Session& session, const std::string& text);

// Opens a generic OBD-II session over the protocol of the settings (or each protocol in turn for
// "Try All"), checks the first answer, discovers the supported parameters and prepares the
// screen. True when the session is open. A link fault is shown and leaves the session closed.
bool ConnectEcu(Session& session);

// Sends the generic request of service and parameter through the request cycle, hands every
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

// True for the two KWP2000 wake-ups, whose sessions answer a refused request with 7F.
bool IsKwp(int protocol);

// Wakes the unit up again with the session's settings (the reconnect flag set). True when it
// answered.
bool ReconnectEcu(Session& session);

// Sets the toolbar's Connect / Disconnect / Setting buttons and the service buttons for a closed
// or an open session; the diagnostic services need the generic module as well, and the settings
// stay closed while a manufacturer module is connected.
void SetToolbarConnected(Session& session, bool connected);

} // namespace kvx::obd
