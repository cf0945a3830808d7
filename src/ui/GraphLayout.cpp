#include "ui/GraphLayout.h"

#include <QFontMetricsF>
#include <algorithm>

namespace kvx::ui {

namespace {

// Room inside the sheet, and between neighbouring scales.
constexpr double kInside = 10, kBetweenScales = 8;
// Time marks across the plot at most; fewer where their labels would touch.
constexpr int kMostTimeMarks = 7;

double widest(const std::vector<ScaleMark>& marks, const QFontMetricsF& metrics)
{
    double most = 0;
    for (const ScaleMark& mark : marks)
        most = std::max(most, metrics.horizontalAdvance(mark.text));
    return most;
}

} // namespace

QFont titleFont(const QFont& labels)
{
    QFont bold(labels);
    bold.setBold(true);
    return bold;
}

GraphGeometry layOutGraph(const GraphPicture& picture, const QSizeF& size, const QFont& font)
{
    const QFontMetricsF metrics(font), title(titleFont(font));
    GraphGeometry g;
    g.sheet = QRectF(QPointF(0, 0), size).adjusted(kSheetEdge, kSheetEdge, -kSheetEdge, -kSheetEdge);
    const QRectF inside = g.sheet.adjusted(kInside, kInside / 2, -kInside, -kInside / 2);
    std::vector<QString> names;
    for (const GraphLine& line : picture.lines)
        names.push_back(line.name);
    g.key = layoutKey(names, metrics, inside);

    // Each scale takes its marks, its labels and a gap to the next, as long as the plot keeps
    // half the width: in a narrow window the last items' scales give way (the key still names
    // them). The outermost time label keeps half its width inside the sheet too.
    double left = 0, right = 0;
    std::vector<double> widths;
    for (const GraphLine& line : picture.lines) {
        const double width = kTick + kLabelGap + widest(line.scale.marks, metrics) + kBetweenScales;
        if (left + right + width > inside.width() / 2)
            break;
        widths.push_back(width);
        (widths.size() % 2 == 1 ? left : right) += width;
    }
    const double edge = metrics.horizontalAdvance(QStringLiteral("00000")) / 2;
    const double top = (names.empty() ? inside.top() : g.key.bottom) + metrics.height();
    const double bottom = inside.bottom() - title.height() - metrics.height() - kTick - 2 * kLabelGap;
    g.plot = QRectF(QPointF(inside.left() + std::max(left, edge), top),
                    QPointF(inside.right() - std::max(right, edge), std::max(bottom, top + 1)));
    if (g.plot.width() < 1)
        g.plot.setWidth(1);

    double outLeft = g.plot.left(), outRight = g.plot.right();
    for (std::size_t k = 0; k < widths.size(); ++k) {
        double& out = k % 2 == 0 ? outLeft : outRight;
        g.scaleX.push_back(out);
        out += k % 2 == 0 ? -widths[k] : widths[k];
    }

    for (int most = kMostTimeMarks; most >= 1; --most) {
        g.timeMarks = timeMarks(picture.from, picture.to, most);
        const double needed = (widest(g.timeMarks, metrics) + 2 * kBetweenScales) * static_cast<double>(g.timeMarks.size());
        if (needed <= g.plot.width())
            break;
    }
    return g;
}

double timeX(const GraphPicture& picture, const QRectF& plot, double t)
{
    return plot.left() + (t - picture.from) / std::max(picture.to - picture.from, 1e-9) * plot.width();
}

double valueY(const Scale& scale, const QRectF& plot, double value)
{
    return plot.bottom() - (value - scale.low) / std::max(scale.high - scale.low, 1e-12) * plot.height();
}

} // namespace kvx::ui
