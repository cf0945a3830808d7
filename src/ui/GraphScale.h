#pragma once

#include <QString>
#include <vector>

namespace kvx::ui {

// A mark on a scale: where it stands and what it reads.
struct ScaleMark {
    double value;
    QString text;
};

// A value scale: the range it shows and its marks, low to high.
struct Scale {
    double low = 0, high = 1;
    std::vector<ScaleMark> marks;
};

// Marks on each value scale: every scale has as many, so they share the grid lines.
constexpr int kScaleMarks = 5;

// A scale on round numbers (steps of 1, 2, 2.5 or 5 times a power of ten) with kScaleMarks marks,
// from its lowest mark to its highest, that holds low to high with a little room; a value that
// never goes below zero gets no scale below zero.
Scale valueScale(double low, double high);

// A switch's scale: OFF at 0 and ON at 1, with room above and below.
Scale switchScale();

// Marks between from and to on the multiples of the finest round step that makes at most the
// given number of them, each reading its value with as many decimals as the step needs.
std::vector<ScaleMark> timeMarks(double from, double to, int most);

} // namespace kvx::ui
