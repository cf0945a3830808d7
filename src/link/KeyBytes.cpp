#include "link/KeyBytes.h"

#include "link/Hex.h"

namespace kvx::link {

KeyBytesMeaning interpretKeyBytes(int protocol, std::uint8_t kb1, std::uint8_t kb2)
{
    KeyBytesMeaning m;
    const std::string shown = toHex(kb1) + " " + toHex(kb2);
    if (protocol == 1) {
        // 08 08 keeps the normal P2 window; 94 94 lets the unit answer at once.
        if (kb1 == 0x08 && kb2 == 0x08)
            m.p2Min = ms(25);
        else if (kb1 == 0x94 && kb2 == 0x94)
            m.p2Min = 0;
        else {
            m.why = "key bytes " + shown + " are not ISO 9141-2 (08 08 or 94 94)";
            return m;
        }
        m.accepted = true;
        return m;
    }
    if (kb2 != 0x8F) {
        m.why = "key bytes " + shown + " are not ISO 14230 (KB2 must be 8F)";
        return m;
    }
    const std::uint8_t bits = kb1 & 0x7F;
    const bool al0 = bits & 0x01, al1 = bits & 0x02, hb0 = bits & 0x04, hb1 = bits & 0x08, tp = bits & 0x10;
    m.kwp = true;
    m.accepted = true;
    m.p2Min = tp ? 0 : ms(25);
    // A unit that names no header form at all still takes the full form.
    m.form.addresses = hb1 || !hb0;
    m.form.lengthInFormat = al0 || !al1;
    m.form.lengthByte = al1;
    return m;
}

} // namespace kvx::link
