#pragma once

#include "link/Clock.h"
#include "link/Hex.h"
#include "link/KeyBytes.h"
#include "link/Protocol.h"
#include "link/ProtocolBytes.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kvx::link {

struct TimedByte {
    std::uint8_t value = 0;
    Micros time = 0; // when the tester received it
};

struct DroppedBytes {
    Bytes bytes;
    Micros time = 0;
    std::string reason;
};

// The frames found in what the units sent after one request, in order, and what was thrown away.
struct FrameCut {
    std::vector<Bytes> frames;
    std::vector<DroppedBytes> dropped;
    // The last bytes look like the start of a frame still arriving.
    bool incompleteTail = false;
};

// Frames a generic request that holds its three header bytes: the checksum is added, and on
// ISO 14230 the length is written in the format byte or in a length byte as the session allows.
Bytes encodeRequest(LineKind kind, const Bytes& request, const HeaderForm& form);
// Frames a body that starts with its own length byte, addressed from source to target.
Bytes encodeBody(const HeaderForm& form, std::uint8_t target, std::uint8_t source, const Bytes& body);

// Whom a reply frame must be for: the tester that sent the request (F1 for the generic services,
// the start frame's source for bodies), and whether the one-byte header form, which names no one,
// is the session's.
struct ReplyAddressing {
    std::uint8_t tester = kline::kTester;
    bool shortHeaders = false;
};

// Cuts received bytes into frames: ISO 14230 by the length in the format or length byte, ISO 9141
// by checksum and the header of the next frame, with the gaps between bytes as the last resort.
// A frame is only one when it is addressed to the tester from a unit, carries a reply's service
// and its checksum holds; anything else is dropped and the cut resumes on the next byte.
FrameCut cutFrames(LineKind kind, const std::vector<TimedByte>& bytes, const ReplyAddressing& addressing = {});

// The payload (service byte onwards, checksum excluded) of a whole frame.
Bytes payloadOf(LineKind kind, const Bytes& frame);
// A 7F .. 78 reply: the unit is busy and will answer later.
bool isResponsePending(LineKind kind, const Bytes& frame);
// The length byte, the payload and their checksum (the whole frame in the header form without
// addresses): the text form of replies to bodies.
Bytes bodyOf(LineKind kind, const Bytes& frame);

} // namespace kvx::link
