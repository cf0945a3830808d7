#pragma once

#include <set>
#include <string>

namespace kvx::sim::test {

// What a support bitmap given as eight hex digits marks: bit 7 of its first byte is base + 1,
// bit 0 of its last byte base + 32. Nothing when the text is not eight hex digits.
inline std::set<int> markedBy(const std::string& bitmap, int base)
{
    std::set<int> out;
    if (bitmap.size() != 8 || bitmap.find_first_not_of("0123456789ABCDEF") != std::string::npos)
        return out;
    const unsigned long map = std::stoul(bitmap, nullptr, 16);
    for (int n = 1; n <= 32; ++n)
        if (map & (1ul << (32 - n)))
            out.insert(base + n);
    return out;
}

} // namespace kvx::sim::test
