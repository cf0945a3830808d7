#ifndef _WIN32

#include "link/LinkError.h"
#include "link/SerialWire.h"

#include <asm/termbits.h>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <linux/serial.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace kvx::link {

namespace {

// A USB adapter holds a few bytes at most; one that takes none for this long is gone.
constexpr Micros kWriteDeadline = ms(1000);

// What the system said about the last failed call, in brackets.
std::string because() { return " (" + std::string(std::strerror(errno)) + ")"; }

[[noreturn]] void fail(LinkError::Kind kind, const std::string& what) { throw LinkError(kind, what + because()); }

class LinuxSerialWire final : public Wire {
public:
    LinuxSerialWire(std::string device, Clock& clock) : device_(std::move(device)), clock_(clock) {}

    std::string name() const override { return device_; }
    ~LinuxSerialWire() override { close(); }

    void open() override
    {
        if (fd_ >= 0)
            return;
        fd_ = ::open(device_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
        if (fd_ < 0 && errno == EBUSY)
            fail(LinkError::Kind::PortOpen, device_ + " is in use by another program: close it and try again");
        // Serial devices belong to the group dialout, which a new user is not in.
        if (fd_ < 0 && (errno == EACCES || errno == EPERM))
            throw LinkError(LinkError::Kind::PortOpen,
                            "No permission to open " + device_ + ": your user must be in the group dialout. Run "
                            "sudo usermod -aG dialout $USER, then log out and back in.");
        if (fd_ < 0)
            fail(LinkError::Kind::PortOpen, "Cannot open " + device_ + ": is the cable plugged in?");
        // Two programs sharing one cable garble each other's requests: no one else may open it now.
        ioctl(fd_, TIOCEXCL);
        termios2 tio{};
        if (ioctl(fd_, TCGETS2, &tio) < 0) {
            close();
            fail(LinkError::Kind::PortOpen, device_ + " is not a serial port");
        }
        // Raw 8N1, no flow control: the K-line is a plain byte stream.
        tio.c_iflag = IGNBRK;
        tio.c_oflag = 0;
        tio.c_lflag = 0;
        tio.c_cflag = CS8 | CREAD | CLOCAL;
        // VMIN 1 on a non-blocking port: no data is EAGAIN, so an empty read means a hang-up.
        tio.c_cc[VMIN] = 1;
        tio.c_cc[VTIME] = 0;
        if (ioctl(fd_, TCSETS2, &tio) < 0) {
            close();
            fail(LinkError::Kind::PortOpen, "Cannot set up " + device_);
        }
        powerInterface();
        requestLowLatency();
    }

    void close() override
    {
        if (fd_ >= 0) {
            ::close(fd_);
            fd_ = -1;
        }
    }

    bool isOpen() const override { return fd_ >= 0; }

    void setBaud(int baud) override
    {
        requireOpen();
        termios2 tio{};
        if (ioctl(fd_, TCGETS2, &tio) < 0)
            lost("stopped answering" + because());
        // BOTHER asks for the rate itself rather than the nearest standard one: 10400 is not standard.
        tio.c_cflag &= ~CBAUD;
        tio.c_cflag |= BOTHER;
        tio.c_ispeed = tio.c_ospeed = static_cast<speed_t>(baud);
        if (ioctl(fd_, TCSETS2, &tio) < 0)
            fail(LinkError::Kind::BaudRefused, device_ + " refuses " + std::to_string(baud) + " baud");
        termios2 back{};
        if (ioctl(fd_, TCGETS2, &back) < 0)
            lost("stopped answering" + because());
        const long got = static_cast<long>(back.c_ospeed);
        if (std::labs(got - baud) * 100 > 3L * baud)
            throw LinkError(LinkError::Kind::BaudRefused, device_ + " runs at " + std::to_string(got) + " baud when asked for " +
                                                              std::to_string(baud) + ": more than 3 % off, the units would not understand it.");
    }

    void setBreak(bool on) override
    {
        requireOpen();
        if (ioctl(fd_, on ? TIOCSBRK : TIOCCBRK) < 0)
            lost("could not drive the K-line" + because());
    }

    void write(std::span<const std::uint8_t> bytes) override
    {
        requireOpen();
        const Micros deadline = clock_.now() + kWriteDeadline;
        std::size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t n = ::write(fd_, bytes.data() + done, bytes.size() - done);
            if (n > 0) {
                done += static_cast<std::size_t>(n);
                continue;
            }
            if (n < 0 && errno != EAGAIN && errno != EINTR)
                lost("could not be written to" + because());
            waitFor(POLLOUT, deadline, "took no bytes for a second");
        }
    }

    std::size_t read(std::span<std::uint8_t> buf, Micros deadline) override
    {
        requireOpen();
        for (;;) {
            const ssize_t n = ::read(fd_, buf.data(), buf.size());
            if (n > 0)
                return static_cast<std::size_t>(n);
            if (n == 0)
                lost("hung up");
            if (errno != EAGAIN && errno != EINTR)
                lost("could not be read" + because());
            if (!waitFor(POLLIN, deadline, nullptr))
                return 0;
        }
    }

    void flushInput() override
    {
        requireOpen();
        ioctl(fd_, TCFLSH, TCIFLUSH);
    }

private:
    void requireOpen() const
    {
        if (fd_ < 0)
            throw LinkError(LinkError::Kind::PortLost, device_ + " is not open.");
    }

    [[noreturn]] void lost(const std::string& what) const
    {
        throw LinkError(LinkError::Kind::PortLost, device_ + " " + what + ": was the cable pulled out?");
    }

    // Sleeps in poll until the port is ready for `events` or the deadline passes (false then, or
    // a lost port when `late` says why lateness is a fault). A hang-up is a lost port at once:
    // a pulled adapter reports itself ready for ever, and reading it would spin.
    bool waitFor(short events, Micros deadline, const char* late) const
    {
        const Micros left = deadline - clock_.now();
        if (left <= 0) {
            if (late)
                lost(late);
            return false;
        }
        pollfd p{fd_, events, 0};
        // poll's resolution is a millisecond; round up so a deadline is never cut short.
        const int r = ::poll(&p, 1, static_cast<int>((left + 999) / 1000));
        if (r < 0 && errno != EINTR)
            lost("could not be waited on" + because());
        if (r > 0 && (p.revents & (POLLHUP | POLLERR | POLLNVAL)))
            lost("hung up");
        return true;
    }

    // Simple K-line interfaces draw their power from DTR and key the line with RTS low; ports
    // without modem lines (a pseudo-terminal) simply have none to set.
    void powerInterface()
    {
        int dtr = TIOCM_DTR, rts = TIOCM_RTS;
        ioctl(fd_, TIOCMBIS, &dtr);
        ioctl(fd_, TIOCMBIC, &rts);
    }

    // Without low latency a USB adapter holds received bytes back for up to 16 ms, which eats
    // into every K-line window. Ports that do not know the flag simply keep their latency.
    void requestLowLatency()
    {
        serial_struct ss{};
        if (ioctl(fd_, TIOCGSERIAL, &ss) == 0) {
            ss.flags |= ASYNC_LOW_LATENCY;
            ioctl(fd_, TIOCSSERIAL, &ss);
        }
        // FTDI chips keep their own latency timer, set through sysfs rather than the tty.
        const auto slash = device_.find_last_of('/');
        const std::string name = slash == std::string::npos ? device_ : device_.substr(slash + 1);
        std::ofstream timer("/sys/bus/usb-serial/devices/" + name + "/latency_timer");
        if (timer)
            timer << 1;
    }

    std::string device_;
    Clock& clock_;
    int fd_ = -1;
};

} // namespace

std::unique_ptr<Wire> makeSerialWire(const std::string& device, Clock& clock)
{
    return std::make_unique<LinuxSerialWire>(device, clock);
}

std::string serialDeviceForPort(int port) { return "/dev/ttyUSB" + std::to_string(port - 1); }

} // namespace kvx::link

#endif
