#include "session/ValueText.h"

#include <cctype>
#include <charconv>
#include <string_view>

namespace kvx {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// A number, then optionally one blank and a unit without digits that does not start with a blank
// (°C, km/h, %, g/s): the whole text, or nothing. Read by hand rather than by a regular
// expression: a log of 100,000 frames asks this some 400,000 times.
struct NumberAndUnit {
    std::string_view number, unit;
};
std::optional<NumberAndUnit> readNumberAndUnit(std::string_view text)
{
    std::size_t i = 0;
    if (i < text.size() && text[i] == '-')
        ++i;
    const std::size_t digits = i;
    while (i < text.size() && isDigit(text[i]))
        ++i;
    if (i == digits)
        return std::nullopt;
    if (i < text.size() && text[i] == '.') {
        const std::size_t fraction = ++i;
        while (i < text.size() && isDigit(text[i]))
            ++i;
        if (i == fraction)
            return std::nullopt;
    }
    const std::string_view number = text.substr(0, i);
    if (i == text.size())
        return NumberAndUnit{number, {}};
    if (text[i] != ' ' || i + 1 == text.size())
        return std::nullopt;
    const std::string_view unit = text.substr(i + 1);
    if (std::isspace(static_cast<unsigned char>(unit.front())))
        return std::nullopt;
    for (char c : unit)
        if (isDigit(c))
            return std::nullopt;
    return NumberAndUnit{number, unit};
}

} // namespace

ValueParts SplitValue(const std::string& text)
{
    const auto parts = readNumberAndUnit(text);
    if (!parts)
        return {text, {}};
    return {std::string(parts->number), std::string(parts->unit)};
}

std::optional<PlotValue> PlotValueOf(const std::string& text)
{
    if (text == "ON" || text == "OFF")
        return PlotValue{text == "ON" ? 1.0 : 0.0, true, {}};
    const auto parts = readNumberAndUnit(text);
    if (!parts)
        return std::nullopt;
    PlotValue plotted;
    // from_chars reads the C form whatever the user's locale says of decimal points.
    std::from_chars(parts->number.data(), parts->number.data() + parts->number.size(), plotted.value);
    plotted.unit = std::string(parts->unit);
    return plotted;
}

std::string CsvField(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (char c : text) {
        if (c == '"')
            quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

} // namespace kvx
