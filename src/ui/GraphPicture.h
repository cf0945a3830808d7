#pragma once

#include "ui/GraphKey.h"
#include "ui/GraphScale.h"

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <vector>

namespace kvx::ui {

// One plotted item as drawn: its name in the key, its colour, its own scale and the points of
// the range shown (time, value).
struct GraphLine {
    QString name;
    QColor colour;
    Scale scale;
    // Sparse samples are marked each with a dot: a single one draws no line, and a line alone
    // hides where they were.
    bool dots = false;
    std::vector<QPointF> points;
};

// Everything the graph shows: the lines over one time range, the time axis's title, and for an
// empty graph the reason it is empty.
struct GraphPicture {
    std::vector<GraphLine> lines;
    double from = 0, to = 1;
    QString timeTitle;
    QString hint;
};

// Where the parts of a picture go at a given size: the sheet, the key above the plot, the plot,
// the line of each item's scale (evens left of the plot, odds right, the first innermost; as
// many as leave the plot half the width) and the marks of the time axis, as many as fit.
struct GraphGeometry {
    QRectF sheet, plot;
    KeyLayout key;
    std::vector<double> scaleX;
    std::vector<ScaleMark> timeMarks;
};

} // namespace kvx::ui
