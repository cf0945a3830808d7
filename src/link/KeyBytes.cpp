#include "link/KeyBytes.h"

#include "link/Hex.h"
#include "link/KLineTiming.h"
#include "link/ProtocolBytes.h"

namespace kvx::link {

using namespace kline;

KeyBytesMeaning interpretKeyBytes(Protocol protocol, std::uint8_t kb1, std::uint8_t kb2)
{
    KeyBytesMeaning m;
    const std::string shown = toHex(kb1) + " " + toHex(kb2);
    if (protocol == Iso9141Slow) {
        if (kb1 == kIsoKeyByte && kb2 == kIsoKeyByte)
            m.p2Min = kP2Min;
        else if (kb1 == kIsoKeyByteNoWait && kb2 == kIsoKeyByteNoWait)
            m.p2Min = 0;
        else {
            m.why = "key bytes " + shown + " are not ISO 9141-2 (08 08 or 94 94)";
            return m;
        }
        m.accepted = true;
        return m;
    }
    if (kb2 != kKwpKb2) {
        m.why = "key bytes " + shown + " are not ISO 14230 (KB2 must be 8F)";
        return m;
    }
    const std::uint8_t bits = kb1 & ~kKb1Parity;
    m.kwp = true;
    m.accepted = true;
    m.p2Min = (bits & kKb1NoWait) ? 0 : kP2Min;
    // A unit that names no header form at all still takes the full form.
    m.form.addresses = (bits & kKb1Addresses) || !(bits & kKb1NoAddresses);
    m.form.lengthInFormat = (bits & kKb1LengthInFormat) || !(bits & kKb1LengthByte);
    m.form.lengthByte = (bits & kKb1LengthByte) != 0;
    return m;
}

} // namespace kvx::link
