#include "link/decode/NumberText.h"

#include <cmath>
#include <cstdio>

namespace kvx::link::decode {

std::string fixed(double value, int decimals)
{
    const double scale = std::pow(10.0, decimals);
    double rounded = std::round(value * scale) / scale;
    if (rounded == 0.0)
        rounded = 0.0;  // a small negative value would otherwise print as "-0"
    char buf[48];
    std::snprintf(buf, sizeof buf, "%.*f", decimals, rounded);
    return buf;
}

std::string withUnit(double value, int decimals, const char* unit)
{
    std::string text = fixed(value, decimals);
    if (unit && *unit) {
        text += ' ';
        text += unit;
    }
    return text;
}

} // namespace kvx::link::decode
