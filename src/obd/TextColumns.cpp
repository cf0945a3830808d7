#include "obd/TextColumns.h"

namespace kvx::obd {

std::string PadOrCut(const std::string& text, std::size_t width)
{
    std::string out;
    std::size_t count = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool continuation = (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80;
        if (!continuation) {
            if (count == width)
                break;
            ++count;
        }
        out += text[i];
    }
    out.append(width - count, ' ');
    return out;
}

} // namespace kvx::obd
