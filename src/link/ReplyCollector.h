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
// P2*max after a response-pending frame), then cuts them into frames.
CollectedReplies collectReplies(ByteLink& io, LineKind kind, const ReplyAddressing& addressing, TraceSink* trace);

} // namespace kvx::link
