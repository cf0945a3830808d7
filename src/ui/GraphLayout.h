#pragma once

#include "ui/GraphPicture.h"

#include <QFont>
#include <QSizeF>

namespace kvx::ui {

// A scale's marks reach this far from its line, and its labels stand this far beyond them.
constexpr double kTick = 4, kLabelGap = 3;

// The sheet fills the widget but for this edge, as a card on the window.
constexpr double kSheetEdge = 10;

// The title's font: the labels' one, bold.
QFont titleFont(const QFont& labels);

GraphGeometry layOutGraph(const GraphPicture& picture, const QSizeF& size, const QFont& font);

// Where a time or a value on the given scale falls in the plot.
double timeX(const GraphPicture& picture, const QRectF& plot, double t);
double valueY(const Scale& scale, const QRectF& plot, double value);

} // namespace kvx::ui
