#include "ui/GraphChart.h"

#include "session/GraphModel.h"
#include "ui/GraphLayout.h"
#include "ui/GraphPaint.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPalette>
#include <QWheelEvent>
#include <algorithm>
#include <array>

namespace kvx::ui {

namespace {

// Eight colours told apart on a light and a dark background alike.
const std::array<QColor, GraphModel::kMaxSeries> kColours{
    QColor(31, 119, 180), QColor(214, 39, 40),  QColor(44, 160, 44),  QColor(255, 127, 14),
    QColor(148, 103, 189), QColor(23, 190, 207), QColor(140, 86, 75), QColor(227, 119, 194)};

constexpr double kMinSpan = 1;

QString itemName(const GraphSeries& series, bool us)
{
    const std::string& unit = series.unit(us);
    return QString::fromStdString(unit.empty() ? series.label() : series.label() + " (" + unit + ")");
}

} // namespace

GraphChart::GraphChart(const GraphModel& model, QWidget* parent)
    : QWidget(parent), model_(model)
{
    setObjectName(QStringLiteral("chtGraph"));
    // Every pixel is painted, the sheet's corners in the window's colour.
    setAttribute(Qt::WA_OpaquePaintEvent);
    picture_.timeTitle = QStringLiteral("Time (s)");
    connect(&model_, &GraphModel::layoutChanged, this, &GraphChart::rebuild);
    rebuild();
}

void GraphChart::setTimeTitle(const QString& title)
{
    picture_.timeTitle = title;
    update();
}

void GraphChart::showAll()
{
    wantsAll_ = true;
    following_ = false;
    redraw();
}

void GraphChart::follow()
{
    if (held_) {
        followAfterHold_ = true;
        return;
    }
    following_ = true;
    wantsAll_ = false;
    redraw();
}

void GraphChart::hold()
{
    if (held_)
        return;
    held_ = true;
    followAfterHold_ = following_;
    following_ = false;
    wantsAll_ = false;
}

void GraphChart::release()
{
    if (!held_)
        return;
    held_ = false;
    if (followAfterHold_)
        follow();
    else
        redraw();
}

void GraphChart::panBy(double seconds)
{
    following_ = false;
    followAfterHold_ = false;
    wantsAll_ = false;
    end_ += seconds;
    redraw();
}

void GraphChart::zoomBy(double factor)
{
    const double middle = end_ - span_ / 2;
    span_ = std::max(span_ * factor, kMinSpan);
    if (!following_)
        end_ = middle + span_ / 2;
    wantsAll_ = false;
    redraw();
}

void GraphChart::rebuild()
{
    picture_.lines.clear();
    const std::vector<std::string> ids = model_.plotted();
    for (std::size_t k = 0; k < ids.size(); ++k) {
        const GraphSeries* series = model_.series(ids[k]);
        GraphLine line{itemName(*series, model_.us()), kColours[k], {}, false, {}};
        if (series->isSwitch())
            line.scale = switchScale();
        picture_.lines.push_back(std::move(line));
    }
    // An empty chart says why it is empty.
    picture_.hint.clear();
    if (ids.empty())
        picture_.hint = model_.items().empty() ? QStringLiteral("No values yet: start live data, or play a log.")
                                               : QStringLiteral("Tick up to eight items in the list to plot them.");
    redraw();
}

void GraphChart::redraw()
{
    const double first = model_.firstTime(), last = model_.lastTime();
    if (wantsAll_) {
        span_ = std::max(last - first, kMinSpan);
        end_ = first + span_;
    } else if (following_) {
        end_ = std::max(last, first + span_);
    }
    picture_.from = end_ - span_;
    picture_.to = end_;
    // The plot's width at this size decides how many samples are drawn, the scales' labels it.
    layOut();
    const std::vector<std::string> ids = model_.plotted();
    // A bucket per four pixels, its lowest and highest sample drawn: a point per two pixels at
    // most, whatever the line's length, so no more than a line can show at this width.
    const int buckets = std::max(50, static_cast<int>(geometry_.plot.width() / 4));
    for (std::size_t k = 0; k < ids.size() && k < picture_.lines.size(); ++k) {
        const GraphSeries* series = model_.series(ids[k]);
        GraphLine& line = picture_.lines[k];
        line.points = series->drawPoints(picture_.from, picture_.to, buckets, model_.us());
        line.dots = !series->isSwitch() && static_cast<int>(line.points.size()) * 4 < buckets;
        if (series->isSwitch())
            continue;
        double low = 0, high = 1;
        if (!line.points.empty()) {
            auto [minIt, maxIt] = std::minmax_element(line.points.begin(), line.points.end(),
                                                      [](const QPointF& a, const QPointF& b) { return a.y() < b.y(); });
            low = minIt->y();
            high = maxIt->y();
        }
        line.scale = valueScale(low, high);
    }
    layOut();
    update();
}

void GraphChart::layOut()
{
    geometry_ = layOutGraph(picture_, size(), font());
}

QSize GraphChart::minimumSizeHint() const
{
    return {240, 180};
}

void GraphChart::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    redraw();
}

void GraphChart::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().window());
    // On a dark desktop the chart is dark too, rather than a white sheet in a dark window.
    paintGraph(painter, picture_, geometry_, font(), palette().color(QPalette::Window).lightness() < 128);
}

void GraphChart::wheelEvent(QWheelEvent* event)
{
    zoomBy(event->angleDelta().y() > 0 ? 0.8 : 1.25);
    event->accept();
}

void GraphChart::mousePressEvent(QMouseEvent* event)
{
    dragX_ = static_cast<int>(event->position().x());
    event->accept();
}

void GraphChart::mouseMoveEvent(QMouseEvent* event)
{
    if (dragX_ < 0)
        return;
    const int x = static_cast<int>(event->position().x());
    const double perPixel = span_ / std::max(geometry_.plot.width(), 1.0);
    panBy((dragX_ - x) * perPixel);
    dragX_ = x;
}

void GraphChart::mouseReleaseEvent(QMouseEvent* event)
{
    dragX_ = -1;
    event->accept();
}

} // namespace kvx::ui
