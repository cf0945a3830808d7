#include "link/Hex.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace {

using kvx::link::Bytes;

// Runs `kvx sim --pty` and talks to it through the device path it prints.
class PtyVehicle {
public:
    PtyVehicle()
    {
        int out[2];
        if (pipe(out) != 0)
            return;
        pid_ = fork();
        if (pid_ == 0) {
            dup2(out[1], STDOUT_FILENO);
            ::close(out[0]);
            execl(KVX_BIN_DIR "/kvx", "kvx", "sim", "--pty", static_cast<char*>(nullptr));
            _exit(127);
        }
        ::close(out[1]);
        FILE* f = fdopen(out[0], "r");
        char line[256] = {};
        if (f && std::fgets(line, sizeof line, f))
            path_ = std::string(line, std::strcspn(line, "\n"));
        if (f)
            std::fclose(f);
        if (!path_.empty())
            fd_ = ::open(path_.c_str(), O_RDWR | O_NOCTTY);
        termios t{};
        if (fd_ >= 0 && tcgetattr(fd_, &t) == 0) {
            cfmakeraw(&t);
            tcsetattr(fd_, TCSANOW, &t);
        }
    }
    ~PtyVehicle()
    {
        if (fd_ >= 0)
            ::close(fd_);
        if (pid_ > 0) {
            kill(pid_, SIGTERM);
            waitpid(pid_, nullptr, 0);
        }
    }
    bool ready() const { return fd_ >= 0; }

    // Sends a frame and collects what comes back until the line is quiet for 200 ms.
    Bytes exchange(const Bytes& frame)
    {
        if (::write(fd_, frame.data(), frame.size()) != static_cast<ssize_t>(frame.size()))
            return {};
        Bytes got;
        pollfd p{fd_, POLLIN, 0};
        while (::poll(&p, 1, 200) > 0) {
            std::uint8_t buf[256];
            const ssize_t n = ::read(fd_, buf, sizeof buf);
            if (n <= 0)
                break;
            got.insert(got.end(), buf, buf + n);
        }
        return got;
    }

private:
    pid_t pid_ = -1;
    int fd_ = -1;
    std::string path_;
};

TEST(PtyVehicle, AnswersIsoRequestsAtOnceAndKwpAfterStartCommunication)
{
    PtyVehicle pty;
    ASSERT_TRUE(pty.ready());
    const std::string iso = kvx::link::toHex(pty.exchange({0x68, 0x6A, 0xF1, 0x01, 0x00, 0xC4}));
    // The echo, then the gearbox, then the engine unit.
    EXPECT_EQ(iso.substr(0, 12), "686AF10100C4");
    EXPECT_EQ(iso.substr(12, 10), "486B184100");
    EXPECT_EQ(iso.substr(32, 10), "486B104100");

    EXPECT_EQ(kvx::link::toHex(pty.exchange({0xC2, 0x33, 0xF1, 0x01, 0x0C, 0xF3})).size(), 12u); // no session yet
    const std::string started = kvx::link::toHex(pty.exchange({0xC1, 0x33, 0xF1, 0x81, 0x66}));
    EXPECT_EQ(started, "C133F1816683F118C1EF8FCB83F110C1EF8FC3");
    EXPECT_EQ(kvx::link::toHex(pty.exchange({0xC2, 0x33, 0xF1, 0x01, 0x0C, 0xF3})).substr(12, 10), "84F110410C");
}

} // namespace
