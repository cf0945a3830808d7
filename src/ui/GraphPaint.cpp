#include "ui/GraphPaint.h"

#include "ui/GraphLayout.h"

#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>
#include <QLineF>
#include <cmath>
#include <vector>

namespace kvx::ui {

namespace {

struct Look {
    QColor sheetTop, sheetBottom, grid, axis, text;
};

const Look kLight{Qt::white, Qt::white, QColor(230, 230, 230), QColor(180, 180, 184), QColor(64, 64, 68)};
const Look kDark{QColor(46, 48, 58), QColor(18, 18, 24), QColor(134, 135, 140, 110), QColor(134, 135, 140),
                 QColor(240, 240, 240)};

constexpr double kDotRadius = 4, kLineWidth = 1.5, kSwatchWidth = 3;
// Room for a text box that is aligned on one of its edges.
constexpr double kTextRoom = 1000;

// A one-pixel line drawn on a pixel's middle is one pixel wide, not two half-grey ones.
double crisp(double v)
{
    return std::floor(v) + 0.5;
}

void paintGrid(QPainter& p, const GraphPicture& picture, const GraphGeometry& g, const Look& look)
{
    p.setPen(QPen(look.grid, 1));
    for (const ScaleMark& mark : g.timeMarks) {
        const double x = crisp(timeX(picture, g.plot, mark.value));
        p.drawLine(QPointF(x, g.plot.top()), QPointF(x, g.plot.bottom()));
    }
    if (picture.lines.empty())
        return;
    for (int i = 0; i < kScaleMarks - 1; ++i) {
        const double y = crisp(g.plot.top() + g.plot.height() * i / (kScaleMarks - 1));
        p.drawLine(QPointF(g.plot.left(), y), QPointF(g.plot.right(), y));
    }
}

void paintScales(QPainter& p, const GraphPicture& picture, const GraphGeometry& g, const QFontMetricsF& metrics)
{
    const double h = metrics.height();
    // On a plot too short for every label, every other one, or the ends only, or none.
    const double apart = g.plot.height() / (kScaleMarks - 1);
    const std::size_t every = apart >= h ? 1 : 2 * apart >= h ? 2 : 4 * apart >= h ? 4 : 0;
    for (std::size_t k = 0; k < g.scaleX.size(); ++k) {
        const GraphLine& line = picture.lines[k];
        const double x = crisp(g.scaleX[k]);
        const double side = k % 2 == 0 ? -1 : 1;
        p.setPen(QPen(line.colour, 1));
        p.drawLine(QPointF(x, g.plot.top()), QPointF(x, g.plot.bottom()));
        for (std::size_t i = 0; i < line.scale.marks.size(); ++i) {
            const ScaleMark& mark = line.scale.marks[i];
            const double y = valueY(line.scale, g.plot, mark.value);
            p.drawLine(QPointF(x, y), QPointF(x + side * kTick, y));
            if (every == 0 || i % every != 0)
                continue;
            const double from = x + side * (kTick + kLabelGap);
            const QRectF box = side < 0 ? QRectF(from - kTextRoom, y - h / 2, kTextRoom, h) : QRectF(from, y - h / 2, kTextRoom, h);
            p.drawText(box, (side < 0 ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter, mark.text);
        }
    }
}

void paintTimeAxis(QPainter& p, const GraphPicture& picture, const GraphGeometry& g, const QFont& font,
                   const Look& look)
{
    const QFontMetricsF metrics(font);
    const double y = crisp(g.plot.bottom()), labels = y + kTick + kLabelGap;
    p.setPen(QPen(look.axis, 1));
    p.drawLine(QPointF(g.plot.left(), y), QPointF(g.plot.right(), y));
    for (const ScaleMark& mark : g.timeMarks) {
        const double x = crisp(timeX(picture, g.plot, mark.value));
        p.setPen(QPen(look.axis, 1));
        p.drawLine(QPointF(x, y), QPointF(x, y + kTick));
        p.setPen(look.text);
        p.drawText(QRectF(x - kTextRoom / 2, labels, kTextRoom, metrics.height()), Qt::AlignHCenter | Qt::AlignTop,
                   mark.text);
    }
    p.setFont(titleFont(font));
    p.setPen(look.text);
    const double top = labels + metrics.height() + kLabelGap;
    p.drawText(QRectF(g.plot.left(), top, g.plot.width(), QFontMetricsF(p.font()).height()),
               Qt::AlignHCenter | Qt::AlignTop, picture.timeTitle);
    p.setFont(font);
}

void paintLines(QPainter& p, const GraphPicture& picture, const GraphGeometry& g)
{
    p.save();
    // A line reaches on to the samples just outside the range shown and is cut at the plot's
    // sides; the dots of the samples inside it stay whole, on the plot's edges too.
    const QRectF dotted = g.plot.adjusted(-kDotRadius - 1, -kDotRadius - 1, kDotRadius + 1, kDotRadius + 1);
    std::vector<QPointF> at;
    std::vector<QLineF> segments;
    for (const GraphLine& line : picture.lines) {
        at.clear();
        for (const QPointF& point : line.points)
            at.emplace_back(timeX(picture, g.plot, point.x()), valueY(line.scale, g.plot, point.y()));
        // Segment by segment: a wide line drawn as one outline is filled as a whole, and a busy
        // line crossing itself hundreds of times took the raster engine some 25 ms; its segments
        // take a fraction of one. Square ends close the corners where two segments meet.
        segments.clear();
        for (std::size_t i = 1; i < at.size(); ++i)
            segments.emplace_back(at[i - 1], at[i]);
        QPen pen(line.colour, kLineWidth);
        pen.setCapStyle(Qt::SquareCap);
        p.setPen(pen);
        p.setClipRect(QRectF(g.plot.left(), dotted.top(), g.plot.width(), dotted.height()));
        p.drawLines(segments.data(), static_cast<int>(segments.size()));
        if (!line.dots)
            continue;
        p.setClipRect(dotted);
        p.setPen(Qt::NoPen);
        p.setBrush(line.colour);
        for (const QPointF& point : at)
            if (point.x() >= g.plot.left() - 0.5 && point.x() <= g.plot.right() + 0.5)
                p.drawEllipse(point, kDotRadius, kDotRadius);
        p.setBrush(Qt::NoBrush);
    }
    p.restore();
}

void paintKey(QPainter& p, const GraphPicture& picture, const GraphGeometry& g, const Look& look)
{
    for (std::size_t k = 0; k < picture.lines.size(); ++k) {
        const KeyEntry& entry = g.key.entries[k];
        p.setPen(QPen(picture.lines[k].colour, kSwatchWidth));
        p.drawLine(entry.swatch);
        p.setPen(look.text);
        p.drawText(entry.name, kKeyTextFlags, picture.lines[k].name);
    }
}

} // namespace

void paintGraph(QPainter& p, const GraphPicture& picture, const GraphGeometry& g, const QFont& font, bool dark)
{
    const Look& look = dark ? kDark : kLight;
    p.setRenderHint(QPainter::Antialiasing);
    p.setFont(font);
    QLinearGradient sheet(g.sheet.topLeft(), g.sheet.bottomLeft());
    sheet.setColorAt(0, look.sheetTop);
    sheet.setColorAt(1, look.sheetBottom);
    p.setPen(Qt::NoPen);
    p.setBrush(sheet);
    p.drawRoundedRect(g.sheet, 5, 5);
    p.setBrush(Qt::NoBrush);

    paintGrid(p, picture, g, look);
    paintScales(p, picture, g, QFontMetricsF(font));
    paintTimeAxis(p, picture, g, font, look);
    paintLines(p, picture, g);
    paintKey(p, picture, g, look);
    if (!picture.hint.isEmpty()) {
        p.setPen(look.text);
        p.drawText(g.plot.height() > 40 ? g.plot : g.sheet, Qt::AlignCenter | Qt::TextWordWrap, picture.hint);
    }
}

} // namespace kvx::ui
