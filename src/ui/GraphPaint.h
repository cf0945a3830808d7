#pragma once

#include "ui/GraphPicture.h"

#include <QFont>

class QPainter;

namespace kvx::ui {

// Paints a picture laid out by layOutGraph: on a dark desktop the sheet is dark too, rather than
// a white card in a dark window.
void paintGraph(QPainter& painter, const GraphPicture& picture, const GraphGeometry& geometry, const QFont& font,
                bool dark);

} // namespace kvx::ui
