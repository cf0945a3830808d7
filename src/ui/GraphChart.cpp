#include "ui/GraphChart.h"

#include "session/GraphModel.h"

#include <QLineSeries>
#include <QMouseEvent>
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

} // namespace

GraphChart::GraphChart(const GraphModel& model, QWidget* parent)
    : QChartView(parent), model_(model)
{
    setObjectName(QStringLiteral("chtGraph"));
    setRenderHint(QPainter::Antialiasing);
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
    following_ = true;
    wantsAll_ = false;
    redraw();
}

void GraphChart::panBy(double seconds)
{
    following_ = false;
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
    chart()->legend()->setAlignment(Qt::AlignTop);
    chart()->setMargins(QMargins(4, 4, 4, 4));
    timeAxis_ = new QValueAxis;
    timeAxis_->setTitleText(timeTitle_);
    timeAxis_->setLabelFormat(QStringLiteral("%.0f"));
    chart()->addAxis(timeAxis_, Qt::AlignBottom);
    lines_.clear();
    scales_.clear();
    const std::vector<std::string> ids = model_.plotted();
    for (std::size_t k = 0; k < ids.size(); ++k) {
        const GraphSeries* series = model_.series(ids[k]);
        auto* line = new QLineSeries;
        const std::string& unit = series->unit(model_.us());
        line->setName(QString::fromStdString(unit.empty() ? series->label() : series->label() + " (" + unit + ")"));
        QPen pen(kColours[k]);
        pen.setWidthF(1.5);
        line->setPen(pen);
        chart()->addSeries(line);
        auto* scale = new QValueAxis;
        scale->setLinePenColor(kColours[k]);
        scale->setLabelsColor(kColours[k]);
        scale->setTickCount(5);
        scale->setLabelFormat(series->isSwitch() ? QStringLiteral("%.0f") : QStringLiteral("%.4g"));
        chart()->addAxis(scale, k % 2 == 0 ? Qt::AlignLeft : Qt::AlignRight);
        line->attachAxis(timeAxis_);
        line->attachAxis(scale);
        lines_.push_back(line);
        scales_.push_back(scale);
    }
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
    const double from = end_ - span_;
    timeAxis_->setRange(from, end_);
    const std::vector<std::string> ids = model_.plotted();
    // About one bucket per two pixels: what a line can show at this width, whatever its length.
    const int buckets = std::max(100, static_cast<int>(chart()->plotArea().width() / 2));
    for (std::size_t k = 0; k < ids.size() && k < lines_.size(); ++k) {
        const GraphSeries* series = model_.series(ids[k]);
        const std::vector<QPointF> points = series->drawPoints(from, end_, buckets, model_.us());
        lines_[k]->replace(QList<QPointF>(points.begin(), points.end()));
        double low = 0, high = 1;
        if (!points.empty()) {
            auto [minIt, maxIt] = std::minmax_element(points.begin(), points.end(),
                                                      [](const QPointF& a, const QPointF& b) { return a.y() < b.y(); });
            low = minIt->y();
            high = maxIt->y();
        }
        if (series->isSwitch()) {
            low = std::min(low, 0.0);
            high = std::max(high, 1.0);
        }
        const double pad = high > low ? (high - low) * 0.08 : std::max(std::abs(high) * 0.1, 1.0);
        scales_[k]->setRange(low - pad, high + pad);
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
