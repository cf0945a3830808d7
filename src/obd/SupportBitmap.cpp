#include "obd/SupportBitmap.h"

#include "link/Hex.h"

namespace kvx::obd {

bool MarkSupportBitmap(SupportTable& table, const std::string& frame, int service)
{
    // header (3) + service + range + bitmap (4) + checksum: at least ten bytes.
    const auto bytes = link::fromHex(frame);
    if (!bytes || bytes->size() < 10 || (*bytes)[3] != 0x40 + service)
        return false;
    const int column = service - 1;
    int id = (*bytes)[4] + 1;
    const std::size_t bitmapStart = bytes->size() - 5;
    for (std::size_t i = bitmapStart; i < bitmapStart + 4; ++i)
        for (int mask = 0x80; mask != 0; mask >>= 1, ++id)
            if (((*bytes)[i] & mask) && id < Session::kPidRows)
                table[static_cast<std::size_t>(id)][static_cast<std::size_t>(column)] = true;
    return true;
}

} // namespace kvx::obd
