#pragma once

#include "link/ByteLink.h"
#include "link/Framing.h"

#include <vector>

namespace kvx::link {

struct CollectedReplies {
    std::vector<Bytes> frames; // whole frames, response-pending frames left out
    int badChecksums = 0;
    int pendingReplies = 0;
};

// Reads the units' answers to the request just sent until P2max passes without a byte (up to
// P2*max after a response-pending frame, a long wait during which idle runs), then cuts them
// into frames.
CollectedReplies collectReplies(ByteLink& io, LineKind kind, const ReplyAddressing& addressing,
                                const std::function<void()>& idle, TraceSink* trace);

} // namespace kvx::link
