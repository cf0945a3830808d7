#pragma once

#include <string>

namespace kvx::link {

// Names and values of the Nissan engine (module 1) and transmission (module 2) data items read
// with service 0x22. An identifier is four hex digits, block byte then low byte ("1101"); a switch
// of register block 13 adds a blank and its bit number ("1301 5").
class NissanDecoder {
public:
    // The display name, or "" when this unit type has no such item (an unnamed switch bit too).
    std::string SensorName(const std::string& identifier, int moduleIndex) const;

    // The display text of a reply "LL 62 II II data.." (length byte and payload, as DecodeReply
    // gives it; a checksum after it, as older logs hold, is ignored):
    // kind 1 the metric text, kind 2 the US text (the same text when the unit is not metric);
    // bit 0-7 picks a switch of a block 13 register ("ON" / "OFF"). An empty, short or negative
    // reply gives "".
    std::string SensorValue(const std::string& reply, int kind, int bit, int moduleIndex) const;
};

} // namespace kvx::link
