#include "link/LinkError.h"
#include "link/SerialWire.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <sys/ioctl.h>
#include <poll.h>
#include <stdlib.h>
#include <unistd.h>
#include <vector>

using namespace kvx::link;

namespace {

// A pseudo-terminal pair: the wire opens the slave, the test plays the cable on the master.
class Pty {
public:
    Pty()
    {
        master_ = posix_openpt(O_RDWR | O_NOCTTY);
        if (master_ >= 0 && grantpt(master_) == 0 && unlockpt(master_) == 0)
            slave_ = ptsname(master_);
    }
    ~Pty() { closeMaster(); }
    // The other end goes away, as a USB adapter does when it is pulled out.
    void closeMaster()
    {
        if (master_ >= 0)
            close(master_);
        master_ = -1;
    }
    bool ok() const { return !slave_.empty(); }
    const std::string& slave() const { return slave_; }
    int master() const { return master_; }

    std::string readMaster(std::size_t want)
    {
        std::string out;
        while (out.size() < want) {
            pollfd p{master_, POLLIN, 0};
            if (poll(&p, 1, 1000) <= 0)
                break;
            std::array<char, 64> buf{};
            const ssize_t n = ::read(master_, buf.data(), buf.size());
            if (n <= 0)
                break;
            out.append(buf.data(), static_cast<std::size_t>(n));
        }
        return out;
    }

private:
    int master_ = -1;
    std::string slave_;
};

// The real clock, counting how often the wire asks it the time: once per turn of a waiting loop.
class CountingClock final : public Clock {
public:
    Micros now() const override
    {
        ++calls;
        return steady_.now();
    }
    void sleepUntil(Micros t) override { steady_.sleepUntil(t); }
    mutable int calls = 0;

private:
    SteadyClock steady_;
};

void expectLostPort(const std::function<void()>& call, const char* what)
{
    try {
        call();
        ADD_FAILURE() << what << " went on after the hang-up";
    } catch (const LinkError& e) {
        EXPECT_EQ(e.kind(), LinkError::Kind::PortLost) << what;
        const std::string text = e.what();
        const std::string ending = "was the cable pulled out?";
        EXPECT_EQ(text.substr(text.size() - std::min(text.size(), ending.size())), ending) << text;
    }
}

// A wire opened on the slave of a fresh pseudo-terminal; skipped where there are none.
class SerialWireOnPty : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!pty.ok())
            GTEST_SKIP() << "no pseudo-terminals here";
        wire = makeSerialWire(pty.slave(), clock);
        wire->open();
    }
    Pty pty;
    CountingClock clock;
    std::unique_ptr<Wire> wire;
};

} // namespace

TEST_F(SerialWireOnPty, CarriesBytesBothWaysAndHonoursReadDeadlines)
{
    ASSERT_TRUE(wire->isOpen());

    const std::array<std::uint8_t, 3> out{0x68, 0x0A, 0xF1};
    wire->write(out);
    EXPECT_EQ(pty.readMaster(3), std::string("\x68\x0A\xF1", 3)) << "raw mode: no newline translation";

    ASSERT_EQ(::write(pty.master(), "\x48\x0D\x00", 3), 3);
    std::array<std::uint8_t, 8> in{};
    std::size_t got = 0;
    while (got < 3) {
        const std::size_t n = wire->read(std::span(in).subspan(got), clock.now() + ms(500));
        ASSERT_GT(n, 0u);
        got += n;
    }
    EXPECT_EQ(in[0], 0x48);
    EXPECT_EQ(in[1], 0x0D);
    EXPECT_EQ(in[2], 0x00);

    const Micros start = clock.now();
    EXPECT_EQ(wire->read(in, start + ms(40)), 0u);
    const Micros waited = clock.now() - start;
    EXPECT_GE(waited, ms(40));
    EXPECT_LT(waited, ms(200)) << "a silent line returns at the deadline, not much later";

    wire->close();
    EXPECT_FALSE(wire->isOpen());
    EXPECT_THROW(wire->write(out), LinkError);
}

TEST_F(SerialWireOnPty, SetsTheExactKLineRateOrRefusesIt)
{
    try {
        wire->setBaud(10400);
    } catch (const LinkError& e) {
        EXPECT_EQ(e.kind(), LinkError::Kind::BaudRefused);
        GTEST_SKIP() << "this kernel's pty does not carry arbitrary rates: " << e.what();
    }
    // A pty keeps whatever rate it is given, so the read-back check passes for 10400 exactly.
    wire->setBaud(9600);
}

TEST(SerialWire, AMissingDeviceIsAPlainError)
{
    SteadyClock clock;
    auto wire = makeSerialWire("/dev/ttyUSB-none", clock);
    try {
        wire->open();
        FAIL();
    } catch (const LinkError& e) {
        EXPECT_EQ(e.kind(), LinkError::Kind::PortOpen);
        EXPECT_NE(std::string(e.what()).find("/dev/ttyUSB-none"), std::string::npos);
    }
}

TEST_F(SerialWireOnPty, AHangUpIsALostPortAtOnce)
{
    const std::array<std::uint8_t, 2> request{0x68, 0x6A};
    wire->write(request);
    EXPECT_EQ(pty.readMaster(2).size(), 2u);

    pty.closeMaster();
    std::array<std::uint8_t, 8> in{};
    const Micros start = clock.now();
    clock.calls = 0;
    expectLostPort([&] { wire->read(in, start + ms(2000)); }, "a read");
    EXPECT_LT(clock.now() - start, ms(500)) << "not at the read's deadline";
    EXPECT_LT(clock.calls, 10) << "the wait did not spin";
    expectLostPort([&] { wire->write(request); }, "a write");
}

TEST_F(SerialWireOnPty, AWriteThePortNeverTakesEndsAtItsDeadline)
{
    // Nobody reads the other end: its buffer fills and the port takes no more.
    const std::vector<std::uint8_t> flood(1 << 20, 0x55);
    const Micros start = clock.now();
    expectLostPort([&] { wire->write(flood); }, "a write");
    EXPECT_LT(clock.now() - start, ms(5000));
}

TEST_F(SerialWireOnPty, ThePortIsOpenedForThisProgramAlone)
{
    // Another program's open fails with EBUSY; an administrator's succeeds, so ask the flag itself.
    const int other = ::open(pty.slave().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (other < 0) {
        EXPECT_EQ(errno, EBUSY);
        return;
    }
    int exclusive = 0;
    ASSERT_EQ(ioctl(other, TIOCGEXCL, &exclusive), 0);
    ::close(other);
    EXPECT_EQ(exclusive, 1);
}
