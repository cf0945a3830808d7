#pragma once

#include <cstddef>
#include <cstdint>

namespace kvx::link::kline {

// The bytes of ISO 9141-2, ISO 14230 and J1979 that the tester and the virtual vehicle both speak.

// Addresses.
constexpr std::uint8_t kObdAddress = 0x33; // the units' functional address, also sent at 5 baud
constexpr std::uint8_t kTester = 0xF1;
// Addresses from F0 up are testers; everything below is a unit.
constexpr std::uint8_t kFirstTester = 0xF0;

// ISO 9141-2 headers: a request goes 68 6A F1, a reply comes 48 6B <unit>.
constexpr std::uint8_t kIsoRequest = 0x68;
constexpr std::uint8_t kIsoRequestTarget = 0x6A;
constexpr std::uint8_t kIsoReply = 0x48;
constexpr std::uint8_t kIsoReplyTarget = 0x6B;
constexpr std::size_t kIsoHeaderSize = 3;
constexpr std::size_t kIsoMaxData = 7;

// ISO 14230 format byte: two address-mode bits and six length bits (0: a length byte follows).
constexpr std::uint8_t kAddressMode = 0xC0;
constexpr std::uint8_t kPhysical = 0x80;
constexpr std::uint8_t kFunctional = 0xC0;
constexpr std::uint8_t kLengthMask = 0x3F;
constexpr std::size_t kMaxLengthInFormat = kLengthMask;
constexpr std::size_t kKwpAddressedHeader = 3;
constexpr std::size_t kKwpShortHeader = 1;
constexpr std::size_t kKwpMaxData = 255;
// The format byte and, when its address bits are set, target and source.
constexpr std::size_t kwpHeaderSize(std::uint8_t format)
{
    return (format & kAddressMode) ? kKwpAddressedHeader : kKwpShortHeader;
}
// Where the service sits: after the header and, when the length bits are 0, the length byte.
constexpr std::size_t kwpServiceAt(std::uint8_t format)
{
    return kwpHeaderSize(format) + ((format & kLengthMask) == 0 ? 1 : 0);
}

// The wake-up handshake.
constexpr std::uint8_t kSync = 0x55;
constexpr std::uint8_t kIsoKeyByte = 0x08;       // 08 08: the normal P2 window
constexpr std::uint8_t kIsoKeyByteNoWait = 0x94; // 94 94: the unit may answer at once
constexpr std::uint8_t kKwpKb2 = 0x8F;
// KB1 of ISO 14230: which length and header forms the unit takes, and its timing set.
constexpr std::uint8_t kKb1LengthInFormat = 0x01; // AL0
constexpr std::uint8_t kKb1LengthByte = 0x02;     // AL1
constexpr std::uint8_t kKb1NoAddresses = 0x04;    // HB0
constexpr std::uint8_t kKb1Addresses = 0x08;      // HB1
constexpr std::uint8_t kKb1NoWait = 0x10;         // TP
constexpr std::uint8_t kKb1Parity = 0x80;

// Services. A positive reply is the request's service with bit 6 set.
constexpr std::uint8_t kCurrentData = 0x01;
constexpr std::uint8_t kFreezeFrame = 0x02;
constexpr std::uint8_t kStoredCodes = 0x03;
constexpr std::uint8_t kClearCodes = 0x04;
constexpr std::uint8_t kOxygenTests = 0x05;
constexpr std::uint8_t kMonitorTests = 0x06;
constexpr std::uint8_t kPendingCodes = 0x07;
constexpr std::uint8_t kVehicleInformation = 0x09;
constexpr std::uint8_t kReadDataByIdentifier = 0x22;
constexpr std::uint8_t kTesterPresent = 0x3E;
constexpr std::uint8_t kStartCommunication = 0x81;
constexpr std::uint8_t kReplyBit = 0x40;
constexpr std::uint8_t positiveReply(std::uint8_t service) { return service | kReplyBit; }

// A negative reply: 7F, the refused service, the reason.
constexpr std::uint8_t kNegativeReply = 0x7F;
constexpr std::uint8_t kServiceNotSupported = 0x11;
constexpr std::uint8_t kSubFunctionNotSupported = 0x12;
constexpr std::uint8_t kConditionsNotCorrect = 0x22;
constexpr std::uint8_t kOutOfRange = 0x31;
constexpr std::uint8_t kResponsePending = 0x78; // busy: the answer follows within P2*max

} // namespace kvx::link::kline
