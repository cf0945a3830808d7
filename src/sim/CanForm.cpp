#include "sim/CanForm.h"

#include "link/ProtocolBytes.h"

#include <algorithm>

namespace kvx::sim {

namespace {

using namespace link::kline;

constexpr std::uint8_t kCodesReplies[] = {positiveReply(kStoredCodes), positiveReply(kPendingCodes)};
constexpr std::uint8_t kVinItem = 0x02;
constexpr std::size_t kFrameSize = 8;
constexpr std::size_t kSingleFrameData = kFrameSize - 1;
constexpr std::size_t kFirstFrameData = kFrameSize - 2;
constexpr std::uint8_t kPadding = 0x00;

bool all(const std::vector<link::Bytes>& frames, std::uint8_t service, std::size_t minSize)
{
    return std::all_of(frames.begin(), frames.end(),
                       [&](const link::Bytes& f) { return f.size() >= minSize && f[0] == service; });
}

link::Bytes codeList(const std::vector<link::Bytes>& frames)
{
    link::Bytes codes;
    for (const link::Bytes& f : frames)
        for (std::size_t i = 1; i + 1 < f.size(); i += 2)
            if (f[i] != 0 || f[i + 1] != 0) {
                codes.push_back(f[i]);
                codes.push_back(f[i + 1]);
            }
    link::Bytes out{frames.front()[0], static_cast<std::uint8_t>(codes.size() / 2)};
    out.insert(out.end(), codes.begin(), codes.end());
    return out;
}

// The numbered K-line messages joined, the zero filler in front of the text dropped.
link::Bytes vin(const std::vector<link::Bytes>& frames)
{
    link::Bytes text;
    for (const link::Bytes& f : frames)
        text.insert(text.end(), f.begin() + 3, f.end());
    text.erase(text.begin(), std::find_if(text.begin(), text.end(), [](std::uint8_t b) { return b != 0; }));
    link::Bytes out{positiveReply(kVehicleInformation), kVinItem, 0x01};
    out.insert(out.end(), text.begin(), text.end());
    return out;
}

} // namespace

std::vector<link::Bytes> canForm(const std::vector<link::Bytes>& frames)
{
    if (frames.empty())
        return {};
    const link::Bytes& first = frames.front();
    for (std::uint8_t reply : kCodesReplies)
        if (all(frames, reply, 1))
            return {codeList(frames)};
    if (all(frames, positiveReply(kVehicleInformation), 3) && first[1] == kVinItem)
        return {vin(frames)};
    return frames;
}

std::vector<link::Bytes> isoTpFrames(const link::Bytes& message)
{
    std::vector<link::Bytes> out;
    if (message.size() <= kSingleFrameData) {
        link::Bytes f{static_cast<std::uint8_t>(message.size())};
        f.insert(f.end(), message.begin(), message.end());
        f.resize(kFrameSize, kPadding);
        return {f};
    }
    link::Bytes f{static_cast<std::uint8_t>(0x10 | (message.size() >> 8 & 0x0F)), static_cast<std::uint8_t>(message.size())};
    f.insert(f.end(), message.begin(), message.begin() + kFirstFrameData);
    out.push_back(f);
    std::uint8_t sequence = 1;
    for (std::size_t at = kFirstFrameData; at < message.size(); at += kSingleFrameData) {
        link::Bytes c{static_cast<std::uint8_t>(0x20 | sequence)};
        const std::size_t end = std::min(message.size(), at + kSingleFrameData);
        c.insert(c.end(), message.begin() + static_cast<long>(at), message.begin() + static_cast<long>(end));
        c.resize(kFrameSize, kPadding);
        out.push_back(c);
        sequence = static_cast<std::uint8_t>((sequence + 1) & 0x0F);
    }
    return out;
}

} // namespace kvx::sim
