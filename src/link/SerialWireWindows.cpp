#ifdef _WIN32

#include "link/LinkError.h"
#include "link/SerialWire.h"

#include <windows.h>

namespace kvx::link {

namespace {

// A port that takes no bytes for a second is gone.
constexpr DWORD kWriteTimeoutMs = 1000;

class WindowsSerialWire final : public Wire {
public:
    WindowsSerialWire(std::string device, Clock& clock) : device_(std::move(device)), clock_(clock) {}

    std::string name() const override { return device_; }
    ~WindowsSerialWire() override { close(); }

    void open() override
    {
        if (h_ != INVALID_HANDLE_VALUE)
            return;
        const std::string path = "\\\\.\\" + device_;
        h_ = CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        if (h_ == INVALID_HANDLE_VALUE)
            throw LinkError(LinkError::Kind::PortOpen, "Cannot open " + device_ + ": is the cable plugged in?");
        COMMTIMEOUTS t{};
        t.WriteTotalTimeoutConstant = kWriteTimeoutMs;
        SetCommTimeouts(h_, &t);
    }

    void close() override
    {
        if (h_ != INVALID_HANDLE_VALUE) {
            CloseHandle(h_);
            h_ = INVALID_HANDLE_VALUE;
        }
    }

    bool isOpen() const override { return h_ != INVALID_HANDLE_VALUE; }

    void setBaud(int baud) override
    {
        DCB dcb{};
        dcb.DCBlength = sizeof dcb;
        if (!GetCommState(h_, &dcb))
            throw LinkError(LinkError::Kind::PortLost, "Lost " + device_);
        dcb.BaudRate = static_cast<DWORD>(baud);
        dcb.ByteSize = 8;
        dcb.Parity = NOPARITY;
        dcb.StopBits = ONESTOPBIT;
        dcb.fBinary = TRUE;
        dcb.fOutxCtsFlow = dcb.fOutxDsrFlow = FALSE;
        // Simple K-line interfaces draw their power from DTR and key the line with RTS low.
        dcb.fDtrControl = DTR_CONTROL_ENABLE;
        dcb.fRtsControl = RTS_CONTROL_DISABLE;
        if (!SetCommState(h_, &dcb))
            throw LinkError(LinkError::Kind::BaudRefused, device_ + " refuses " + std::to_string(baud) + " baud");
        DCB back{};
        back.DCBlength = sizeof back;
        GetCommState(h_, &back);
        const long got = static_cast<long>(back.BaudRate);
        if (labs(got - baud) * 100 > 3L * baud)
            throw LinkError(LinkError::Kind::BaudRefused, device_ + " runs at " + std::to_string(got) + " baud, more than 3 % off.");
    }

    void setBreak(bool on) override
    {
        if (!(on ? SetCommBreak(h_) : ClearCommBreak(h_)))
            throw LinkError(LinkError::Kind::PortLost, "Cannot drive the K-line on " + device_);
    }

    void write(std::span<const std::uint8_t> bytes) override
    {
        DWORD n = 0;
        if (!WriteFile(h_, bytes.data(), static_cast<DWORD>(bytes.size()), &n, nullptr) || n != bytes.size())
            throw LinkError(LinkError::Kind::PortLost, "Writing to " + device_ + " failed: was the cable pulled out?");
    }

    std::size_t read(std::span<std::uint8_t> buf, Micros deadline) override
    {
        // Return as soon as one byte is there, or when the deadline passes.
        const Micros left = deadline - clock_.now();
        COMMTIMEOUTS t{};
        t.ReadIntervalTimeout = MAXDWORD;
        t.ReadTotalTimeoutMultiplier = MAXDWORD;
        t.ReadTotalTimeoutConstant = left > 0 ? static_cast<DWORD>((left + 999) / 1000) : 1;
        t.WriteTotalTimeoutConstant = kWriteTimeoutMs;
        SetCommTimeouts(h_, &t);
        DWORD n = 0;
        if (!ReadFile(h_, buf.data(), static_cast<DWORD>(buf.size()), &n, nullptr))
            throw LinkError(LinkError::Kind::PortLost, "Reading from " + device_ + " failed: was the cable pulled out?");
        return n;
    }

    void flushInput() override { PurgeComm(h_, PURGE_RXCLEAR); }

private:
    std::string device_;
    Clock& clock_;
    HANDLE h_ = INVALID_HANDLE_VALUE;
};

} // namespace

std::unique_ptr<Wire> makeSerialWire(const std::string& device, Clock& clock)
{
    return std::make_unique<WindowsSerialWire>(device, clock);
}

std::string serialDeviceForPort(int port) { return "COM" + std::to_string(port); }

} // namespace kvx::link

#endif
