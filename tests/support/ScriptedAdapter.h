#pragma once

#include "link/Clock.h"
#include "link/Wire.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kvx::test {

// A Wire that answers as an ELM327 would, from a script: every command line gets the script's
// answer for it (AT commands "OK" unless told otherwise, requests "NO DATA"), its echo while echo
// is on, and the prompt. At any rate but its own it answers noise and no prompt.
class ScriptedAdapter final : public link::Wire {
public:
    explicit ScriptedAdapter(link::Clock& clock) : clock_(clock) {}

    // Answer lines joined by "\r", keyed by the command as sent.
    std::map<std::string, std::string> answers{{"ATZ", "ELM327 v1.5"}, {"ATI", "ELM327 v1.5"}, {"ATDPN", "A6"},
                                               {"ATSI", "BUS INIT: ...OK"}, {"ATFI", "BUS INIT: ...OK"}};
    int rate = 38400;
    std::vector<std::string> received;
    std::vector<int> ratesTried;

    void open() override { open_ = true; }
    void close() override { open_ = false; }
    bool isOpen() const override { return open_; }
    void setBaud(int baud) override
    {
        baud_ = baud;
        ratesTried.push_back(baud);
    }
    void setBreak(bool) override {}
    void write(std::span<const std::uint8_t> bytes) override
    {
        for (std::uint8_t b : bytes) {
            if (b != '\r') {
                line_ += static_cast<char>(b);
                continue;
            }
            answer(line_);
            line_.clear();
        }
    }
    std::size_t read(std::span<std::uint8_t> buf, link::Micros deadline) override
    {
        if (out_.empty()) {
            clock_.sleepUntil(deadline);
            return 0;
        }
        const std::size_t n = std::min(buf.size(), out_.size());
        std::memcpy(buf.data(), out_.data(), n);
        out_.erase(0, n);
        return n;
    }
    void flushInput() override { out_.clear(); }

    // A Wire for the link to own, talking to this adapter (the link opens a new one per port).
    std::unique_ptr<link::Wire> plug();

    // The commands received after the first n.
    std::vector<std::string> since(std::size_t n) const { return {received.begin() + static_cast<long>(n), received.end()}; }

private:
    void answer(const std::string& command)
    {
        received.push_back(command);
        if (baud_ != rate) {
            out_ += "\x8f\xfe\x13";
            return;
        }
        if (echo_)
            out_ += command + "\r";
        if (command == "ATE0")
            echo_ = false;
        const auto it = answers.find(command);
        const std::string text = it != answers.end() ? it->second : command.rfind("AT", 0) == 0 ? "OK" : "NO DATA";
        out_ += text + "\r\r>";
    }

    link::Clock& clock_;
    bool open_ = false;
    bool echo_ = true;
    int baud_ = 0;
    std::string line_;
    std::string out_;
};

// The adapter as the link holds it: every call goes to the scripted adapter.
class AdapterPlug final : public link::Wire {
public:
    explicit AdapterPlug(ScriptedAdapter& adapter) : a_(adapter) {}
    void open() override { a_.open(); }
    void close() override { a_.close(); }
    bool isOpen() const override { return a_.isOpen(); }
    void setBaud(int baud) override { a_.setBaud(baud); }
    void setBreak(bool on) override { a_.setBreak(on); }
    void write(std::span<const std::uint8_t> bytes) override { a_.write(bytes); }
    std::size_t read(std::span<std::uint8_t> buf, link::Micros deadline) override { return a_.read(buf, deadline); }
    void flushInput() override { a_.flushInput(); }

private:
    ScriptedAdapter& a_;
};

inline std::unique_ptr<link::Wire> ScriptedAdapter::plug() { return std::make_unique<AdapterPlug>(*this); }

// The lines an adapter shows for one unit's answer: a single frame, or a first frame and its
// continuations, each "<id><bytes>" in hex without spaces and padded to eight data bytes.
inline std::string isoTpLines(const std::string& id, const std::vector<std::uint8_t>& payload)
{
    static constexpr char digits[] = "0123456789ABCDEF";
    const auto hex = [](std::uint8_t b) { return std::string{digits[b >> 4], digits[b & 0xF]}; };
    std::vector<std::vector<std::uint8_t>> frames;
    if (payload.size() <= 7) {
        frames.push_back({static_cast<std::uint8_t>(payload.size())});
        frames.back().insert(frames.back().end(), payload.begin(), payload.end());
    } else {
        frames.push_back({static_cast<std::uint8_t>(0x10 | payload.size() >> 8), static_cast<std::uint8_t>(payload.size())});
        std::size_t at = std::min<std::size_t>(6, payload.size());
        frames.back().insert(frames.back().end(), payload.begin(), payload.begin() + static_cast<long>(at));
        for (std::uint8_t seq = 1; at < payload.size(); seq = (seq + 1) & 0x0F) {
            const std::size_t n = std::min<std::size_t>(7, payload.size() - at);
            frames.push_back({static_cast<std::uint8_t>(0x20 | seq)});
            frames.back().insert(frames.back().end(), payload.begin() + static_cast<long>(at),
                                 payload.begin() + static_cast<long>(at + n));
            at += n;
        }
    }
    std::string lines;
    for (auto& f : frames) {
        f.resize(8, 0x55);
        lines += (lines.empty() ? "" : "\r") + id;
        for (auto b : f)
            lines += hex(b);
    }
    return lines;
}

} // namespace kvx::test
