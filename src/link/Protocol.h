#pragma once

#include <string>

namespace kvx::link {

// Protocol numbers as the settings and the link use them. 1 to 4 are the K-line protocols and
// "Try All"; the CAN protocols follow and only an adapter that speaks CAN can open them.
enum Protocol : int {
    Iso9141Slow = 1,
    Kwp2000Slow = 2,
    Kwp2000Fast = 3,
    TryAll = 4,
    Can11Bit500k = 5,
    Can29Bit500k = 6,
    Can11Bit250k = 7,
    Can29Bit250k = 8,
};

constexpr int kLastProtocol = Can29Bit250k;

constexpr bool IsCan(int protocol) { return protocol >= Can11Bit500k && protocol <= Can29Bit250k; }
constexpr bool IsExtendedCan(int protocol) { return protocol == Can29Bit500k || protocol == Can29Bit250k; }

// The protocol's name as the settings list shows it ("" for a number outside 1 to 8).
std::string ProtocolName(int protocol);

// The framing a session speaks: ISO 9141-2 or ISO 14230 (KWP2000), however it was woken.
enum class LineKind { Iso9141, Kwp };

// What sits between the serial port and the car.
enum class InterfaceType { KLineCable, Elm327 };

} // namespace kvx::link
