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

[[noreturn]] void fail(LinkError::Kind kind, const std::string& what)
{
    throw LinkError(kind, what + " (" + std::strerror(errno) + ")");
}

class LinuxSerialWire final : public Wire {
public:
    LinuxSerialWire(std::string device, Clock& clock) : device_(std::move(device)), clock_(clock) {}
    ~LinuxSerialWire() override { close(); }

    void open() override
    {
        if (fd_ >= 0)
            return;
        fd_ = ::open(device_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
        if (fd_ < 0)
            fail(LinkError::Kind::PortOpen, "Cannot open " + device_ + ": is the cable plugged in?");
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
        tio.c_cc[VMIN] = 0;
        tio.c_cc[VTIME] = 0;
        if (ioctl(fd_, TCSETS2, &tio) < 0) {
            close();
            fail(LinkError::Kind::PortOpen, "Cannot set up " + device_);
        }
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
            fail(LinkError::Kind::PortLost, "Lost " + device_);
        // BOTHER asks for the rate itself rather than the nearest standard one: 10400 is not standard.
        tio.c_cflag &= ~CBAUD;
        tio.c_cflag |= BOTHER;
        tio.c_ispeed = tio.c_ospeed = static_cast<speed_t>(baud);
        if (ioctl(fd_, TCSETS2, &tio) < 0)
            fail(LinkError::Kind::BaudRefused, device_ + " refuses " + std::to_string(baud) + " baud");
        termios2 back{};
        if (ioctl(fd_, TCGETS2, &back) < 0)
            fail(LinkError::Kind::PortLost, "Lost " + device_);
        const long got = static_cast<long>(back.c_ospeed);
        if (std::labs(got - baud) * 100 > 3L * baud)
            throw LinkError(LinkError::Kind::BaudRefused, device_ + " runs at " + std::to_string(got) + " baud when asked for " +
                                                              std::to_string(baud) + ": more than 3 % off, the units would not understand it.");
    }

    void setBreak(bool on) override
    {
        requireOpen();
        if (ioctl(fd_, on ? TIOCSBRK : TIOCCBRK) < 0)
            fail(LinkError::Kind::PortLost, "Cannot drive the K-line on " + device_);
    }

    void write(std::span<const std::uint8_t> bytes) override
    {
        requireOpen();
        std::size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t n = ::write(fd_, bytes.data() + done, bytes.size() - done);
            if (n < 0 && errno == EAGAIN) {
                pollfd p{fd_, POLLOUT, 0};
                ::poll(&p, 1, 100);
                continue;
            }
            if (n < 0 && errno != EINTR)
                fail(LinkError::Kind::PortLost, "Writing to " + device_ + " failed: was the cable pulled out?");
            if (n > 0)
                done += static_cast<std::size_t>(n);
        }
    }

    std::size_t read(std::span<std::uint8_t> buf, Micros deadline) override
    {
        requireOpen();
        for (;;) {
            const ssize_t n = ::read(fd_, buf.data(), buf.size());
            if (n > 0)
                return static_cast<std::size_t>(n);
            if (n < 0 && errno != EAGAIN && errno != EINTR)
                fail(LinkError::Kind::PortLost, "Reading from " + device_ + " failed: was the cable pulled out?");
            const Micros left = deadline - clock_.now();
            if (left <= 0)
                return 0;
            // poll's resolution is a millisecond; round up so a deadline is never cut short.
            pollfd p{fd_, POLLIN, 0};
            const int r = ::poll(&p, 1, static_cast<int>((left + 999) / 1000));
            if (r < 0 && errno != EINTR)
                fail(LinkError::Kind::PortLost, "Waiting on " + device_ + " failed");
            if (r > 0 && (p.revents & (POLLHUP | POLLERR)) && !(p.revents & POLLIN))
                throw LinkError(LinkError::Kind::PortLost, device_ + " went away: was the cable pulled out?");
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
