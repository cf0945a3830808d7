#include "obd/SupportBitmap.h"

#include "link/ReplyText.h"

namespace kvx::obd {

bool MarkSupportBitmap(SupportTable& table, const std::string& frame, int service)
{
    // The range, anything the service puts before the bitmap, then the four bitmap bytes.
    const auto m = link::readMessage(frame);
    if (!m || m->service != 0x40 + service || m->data.size() < 5)
        return false;
    const int column = service - 1;
    int id = m->data[0] + 1;
    const std::size_t bitmapStart = m->data.size() - 4;
    for (std::size_t i = bitmapStart; i < bitmapStart + 4; ++i)
        for (int mask = 0x80; mask != 0; mask >>= 1, ++id)
            if ((m->data[i] & mask) && id < Session::kPidRows)
                table[static_cast<std::size_t>(id)][static_cast<std::size_t>(column)] = true;
    return true;
}

} // namespace kvx::obd
