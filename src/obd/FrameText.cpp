#include "obd/FrameText.h"

#include "session/Session.h"

#include <cstdio>

namespace kvx::obd {

std::vector<std::string> SplitFrames(const std::string& reply)
{
    std::vector<std::string> frames;
    std::size_t start = 0;
    for (;;) {
        std::size_t colon = reply.find(':', start);
        if (colon == std::string::npos) {
            frames.push_back(reply.substr(start));
            return frames;
        }
        frames.push_back(reply.substr(start, colon - start));
        start = colon + 1;
    }
}

std::string FrameSource(const std::string& frame)
{
    return frame.size() >= 6 ? frame.substr(4, 2) : std::string();
}

bool FromEcu(const Session& session, const std::string& frame)
{
    const std::string source = FrameSource(frame);
    return !source.empty() && source == session.EcuAddress;
}

std::string HexByte(int value)
{
    char text[3];
    std::snprintf(text, sizeof text, "%02X", static_cast<unsigned>(value) & 0xFFu);
    return text;
}

} // namespace kvx::obd
