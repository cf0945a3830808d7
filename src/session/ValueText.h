#pragma once

#include <optional>
#include <string>

namespace kvx {

// A value cell's text taken apart: "1726 rpm" is the number "1726" and the unit "rpm". Texts that
// are not one number and a unit ("ratio 0.450", "12 km/h, 4 km/h", "ON") stay whole, unit "".
struct ValueParts {
    std::string value;
    std::string unit;
};
ValueParts SplitValue(const std::string& text);

// One CSV field: quoted when it holds a comma, a quote or a line break, quotes doubled.
std::string CsvField(const std::string& text);

// What a value cell gives a graph: a number and its unit, or 1 and 0 for a switch's "ON" and "OFF".
struct PlotValue {
    double value = 0;
    bool isSwitch = false;
    std::string unit;
};
std::optional<PlotValue> PlotValueOf(const std::string& text);

} // namespace kvx
