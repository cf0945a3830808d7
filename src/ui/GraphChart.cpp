#include "ui/GraphChart.h"

#include "session/GraphModel.h"

#include <QApplication>
#include <QCategoryAxis>
#include <QFontMetricsF>
#include <QGraphicsLineItem>
#include <QGraphicsSimpleTextItem>
#include <QLineSeries>
#include <QMouseEvent>
#include <QPalette>
#include <QValueAxis>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <cmath>

namespace kvx::ui {

namespace {

// Eight colours told apart on a light and a dark background alike.
const std::array<QColor, GraphModel::kMaxSeries> kColours{
    QColor(31, 119, 180), QColor(214, 39, 40),  QColor(44, 160, 44),  QColor(255, 127, 14),
    QColor(148, 103, 189), QColor(23, 190, 207), QColor(140, 86, 75), QColor(227, 119, 194)};

constexpr double kMinSpan = 1;
// Marks on each value scale: every scale has as many, so they share the grid lines.
constexpr int kScaleMarks = 5;
// Switches are drawn at 0 (OFF) and 1 (ON), with room above and below.
constexpr double kSwitchLow = -0.25, kSwitchHigh = 1.25;

// The round step (1, 2, 2.5 or 5 times a power of ten) at least as large as the given one.
double roundStep(double raw)
{
    if (!(raw > 0) || !std::isfinite(raw))
        return 1;
    const double power = std::pow(10.0, std::floor(std::log10(raw)));
    for (double f : {1.0, 2.0, 2.5, 5.0, 10.0})
        if (f * power >= raw * (1 - 1e-9))
            return f * power;
    return 10 * power;
}

// Decimals that show every multiple of the step exactly (0.25 needs two, 5 none).
int decimalsFor(double step)
{
    int decimals = 0;
    while (decimals < 6 && std::abs(step * std::pow(10.0, decimals) - std::round(step * std::pow(10.0, decimals))) > 1e-6)
        ++decimals;
    return decimals;
}

struct Scale {
    double low, high, step;
};

// A scale on round numbers with kScaleMarks marks that holds low to high with a little room; a
// value that never goes below zero gets no scale below zero.
Scale roundScale(double low, double high)
{
    const bool positive = low >= 0;
    if (!(high > low)) {
        const double half = std::max(std::abs(high) * 0.1, 1.0);
        low -= half;
        high += half;
    } else {
        const double room = (high - low) * 0.03;
        low -= room;
        high += room;
    }
    if (positive)
        low = std::max(low, 0.0);
    const int steps = kScaleMarks - 1;
    double step = roundStep((high - low) / steps);
    for (int i = 0; i < 8; ++i) {
        const double from = std::floor(low / step + 1e-9) * step;
        if (from + step * steps >= high - step * 1e-9)
            return {from, from + step * steps, step};
        step = roundStep(step * 1.01);
    }
    return {low, high, (high - low) / steps};
}

// The chart lays itself out anew for every change of an axis's format, interval or range, even
// one to the same value: each is set only when it changes.
void setFormat(QValueAxis& axis, const QString& format)
{
    if (axis.labelFormat() != format)
        axis.setLabelFormat(format);
}

void setRange(QValueAxis& axis, double low, double high)
{
    if (axis.min() != low || axis.max() != high)
        axis.setRange(low, high);
}

QString decimalFormat(double step)
{
    return QStringLiteral("%.") + QString::number(decimalsFor(step)) + QStringLiteral("f");
}

QString itemName(const GraphSeries& series, bool us)
{
    const std::string& unit = series.unit(us);
    return QString::fromStdString(unit.empty() ? series.label() : series.label() + " (" + unit + ")");
}

} // namespace

GraphChart::GraphChart(const GraphModel& model, QWidget* parent)
    : QChartView(parent), model_(model)
{
    setObjectName(QStringLiteral("chtGraph"));
    setRenderHint(QPainter::Antialiasing);
    // A sample's dot reaches past what the chart repaints for its line, and a rescaled line left
    // pieces of old dots behind (seen on X11): the whole chart is painted at each change, as
    // the moving time axis asks for anyway.
    setViewportUpdateMode(QGraphicsView::FullViewportUpdate);
    connect(&model_, &GraphModel::layoutChanged, this, &GraphChart::rebuild);
    rebuild();
}

void GraphChart::setTimeTitle(const QString& title)
{
    timeTitle_ = title;
    timeAxis_->setTitleText(title);
}

void GraphChart::setSpan(double seconds)
{
    span_ = std::max(seconds, kMinSpan);
    redraw();
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
    emit viewMoved();
}

void GraphChart::zoomBy(double factor)
{
    const double middle = end_ - span_ / 2;
    span_ = std::max(span_ * factor, kMinSpan);
    if (!following_)
        end_ = middle + span_ / 2;
    wantsAll_ = false;
    redraw();
    emit viewMoved();
}

void GraphChart::rebuild()
{
    // A fresh chart each time the items change: axes taken off a chart leave their space behind.
    QChart* old = chart();
    setChart(new QChart);
    delete old;
    // On a dark desktop the chart is dark too, rather than a white sheet in a dark window.
    if (palette().color(QPalette::Window).lightness() < 128)
        chart()->setTheme(QChart::ChartThemeDark);
    chart()->legend()->hide();
    timeAxis_ = new QValueAxis;
    timeAxis_->setTitleText(timeTitle_);
    timeAxis_->setTickType(QValueAxis::TicksDynamic);
    timeAxis_->setTickAnchor(0);
    chart()->addAxis(timeAxis_, Qt::AlignBottom);
    lines_.clear();
    scales_.clear();
    key_.clear();
    const QFont keyFont = chart()->legend()->font();
    const QBrush keyText = chart()->legend()->labelBrush();
    const std::vector<std::string> ids = model_.plotted();
    for (std::size_t k = 0; k < ids.size(); ++k) {
        const GraphSeries* series = model_.series(ids[k]);
        auto* line = new QLineSeries;
        line->setName(itemName(*series, model_.us()));
        QPen pen(kColours[k]);
        pen.setWidthF(1.5);
        line->setPen(pen);
        line->setMarkerSize(5);
        chart()->addSeries(line);
        QValueAxis* scale = nullptr;
        if (series->isSwitch()) {
            auto* states = new QCategoryAxis;
            states->setLabelsPosition(QCategoryAxis::AxisLabelsPositionOnValue);
            states->append(QStringLiteral("OFF"), 0);
            states->append(QStringLiteral("ON"), 1);
            states->setRange(kSwitchLow, kSwitchHigh);
            states->setGridLineVisible(false);
            scale = states;
        } else {
            scale = new QValueAxis;
            scale->setTickCount(kScaleMarks);
            // One set of grid lines: the scales' marks fall on the same ones.
            scale->setGridLineVisible(k == 0);
        }
        scale->setLinePenColor(kColours[k]);
        scale->setLabelsColor(kColours[k]);
        chart()->addAxis(scale, k % 2 == 0 ? Qt::AlignLeft : Qt::AlignRight);
        line->attachAxis(timeAxis_);
        line->attachAxis(scale);
        lines_.push_back(line);
        scales_.push_back(scale);

        // The key: a stroke of the item's colour and its name with the unit.
        auto* swatch = new QGraphicsLineItem(chart());
        QPen thick(kColours[k]);
        thick.setWidthF(3);
        swatch->setPen(thick);
        auto* name = new QGraphicsSimpleTextItem(line->name(), chart());
        name->setFont(keyFont);
        name->setBrush(keyText);
        name->setData(0, line->name());
        key_.emplace_back(swatch, name);
    }
    // An empty chart says why it is empty.
    hint_ = nullptr;
    if (ids.empty()) {
        hint_ = new QGraphicsSimpleTextItem(model_.items().empty()
                                                ? QStringLiteral("No values yet: start live data, or play a log.")
                                                : QStringLiteral("Tick up to eight items in the list to plot them."),
                                            chart());
        hint_->setFont(keyFont);
        hint_->setBrush(keyText);
    }
    connect(chart(), &QChart::geometryChanged, this, &GraphChart::layoutKey, Qt::UniqueConnection);
    layoutKey();
    redraw();
}

void GraphChart::layoutKey()
{
    // The chart's sheet stands some 10 pixels inside it; the key keeps as much again from its edge.
    constexpr double kEdge = 20, kTop = 12, kSwatch = 18, kGap = 6, kBetween = 18;
    const QFontMetricsF metrics(chart()->legend()->font());
    const double width = std::max(chart()->size().width(), 200.0);
    const double rowHeight = metrics.height() + 4;
    double x = kEdge, y = kTop;
    for (auto& [swatch, name] : key_) {
        auto* text = static_cast<QGraphicsSimpleTextItem*>(name);
        // A name too long for a row of its own is shortened to fit it.
        const QString full = text->data(0).toString();
        const double room = width - 2 * kEdge - kSwatch - kGap;
        text->setText(metrics.elidedText(full, Qt::ElideRight, room));
        const double entry = kSwatch + kGap + metrics.horizontalAdvance(text->text());
        if (x > kEdge && x + entry > width - kEdge) {
            x = kEdge;
            y += rowHeight;
        }
        static_cast<QGraphicsLineItem*>(swatch)->setLine(x, y + rowHeight / 2, x + kSwatch, y + rowHeight / 2);
        text->setPos(x + kSwatch + kGap, y + (rowHeight - metrics.height()) / 2);
        x += entry + kBetween;
    }
    if (hint_) {
        const QRectF area = chart()->plotArea().isEmpty() ? QRectF(QPointF(0, 0), chart()->size()) : chart()->plotArea();
        hint_->setPos(area.center() - hint_->boundingRect().center());
    }
    const int top = key_.empty() ? 4 : static_cast<int>(std::ceil(y + rowHeight));
    if (chart()->margins().top() != top)
        chart()->setMargins(QMargins(4, top, 4, 4));
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
    const double from = end_ - span_;
    // Time marks on round seconds (or frames), some six across. The axis makes its marks at
    // each change of range or interval: a wider range takes its wider interval first, and a
    // narrower one its range first, so it never makes thousands of marks (a log of 100,000
    // frames shown whole at the marks of a minute took 40 s).
    const double interval = roundStep(span_ / 6);
    if (interval > timeAxis_->tickInterval())
        timeAxis_->setTickInterval(interval);
    setRange(*timeAxis_, from, end_);
    if (timeAxis_->tickInterval() != interval)
        timeAxis_->setTickInterval(interval);
    setFormat(*timeAxis_, decimalFormat(interval));
    const std::vector<std::string> ids = model_.plotted();
    // A bucket per four pixels, its lowest and highest sample drawn: a point per two pixels at
    // most, whatever the line's length. The chart's layout and painting take about as long as
    // the points it is given (bench_graph), so no more than a line can show at this width.
    const int buckets = std::max(50, static_cast<int>(chart()->plotArea().width() / 4));
    for (std::size_t k = 0; k < ids.size() && k < lines_.size(); ++k) {
        const GraphSeries* series = model_.series(ids[k]);
        const std::vector<QPointF> points = series->drawPoints(from, end_, buckets, model_.us());
        lines_[k]->replace(QList<QPointF>(points.begin(), points.end()));
        // Sparse samples (a slow poll, the first values, an item the log holds once) are marked
        // each with a dot: a single one draws no line, and a line alone hides where they were.
        const bool dots = !series->isSwitch() && static_cast<int>(points.size()) * 4 < buckets;
        if (lines_[k]->pointsVisible() != dots)
            lines_[k]->setPointsVisible(dots);
        if (qobject_cast<QCategoryAxis*>(scales_[k]))
            continue;
        double low = 0, high = 1;
        if (!points.empty()) {
            auto [minIt, maxIt] = std::minmax_element(points.begin(), points.end(),
                                                      [](const QPointF& a, const QPointF& b) { return a.y() < b.y(); });
            low = minIt->y();
            high = maxIt->y();
        }
        const Scale scale = roundScale(low, high);
        setRange(*scales_[k], scale.low, scale.high);
        setFormat(*scales_[k], decimalFormat(scale.step));
    }
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
    const double perPixel = span_ / std::max(chart()->plotArea().width(), 1.0);
    panBy((dragX_ - x) * perPixel);
    dragX_ = x;
}

void GraphChart::mouseReleaseEvent(QMouseEvent* event)
{
    dragX_ = -1;
    event->accept();
}

} // namespace kvx::ui
