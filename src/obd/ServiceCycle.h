#pragma once

#include <string>

namespace kvx {
struct Session;
}

namespace kvx::obd {

// The generic services run only with the generic module chosen and the port open.
bool GenericServiceAllowed(const Session& session);

// A service pass owns the link: no keep-alive request may fall between its requests. The timer
// runs again at the settings' interval when the pass ends, also when a link fault ends it.
class KeepAlivePause {
public:
    explicit KeepAlivePause(Session& session);
    ~KeepAlivePause();
    KeepAlivePause(const KeepAlivePause&) = delete;
    KeepAlivePause& operator=(const KeepAlivePause&) = delete;

private:
    Session& session_;
};

// Gives the link another P3 wait for one read and puts the one it had back afterwards.
class P3Override {
public:
    P3Override(Session& session, int ms);
    ~P3Override();
    P3Override(const P3Override&) = delete;
    P3Override& operator=(const P3Override&) = delete;

private:
    Session& session_;
    int kept_;
};

} // namespace kvx::obd
