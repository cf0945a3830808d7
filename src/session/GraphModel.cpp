#include "session/GraphModel.h"

#include "session/ValueText.h"

#include <QString>
#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <sstream>

namespace kvx {

GraphSeries::GraphSeries(std::string id, std::string label, std::size_t capacity)
    : id_(std::move(id)), label_(std::move(label)), capacity_(std::max<std::size_t>(capacity, 2))
{
}

void GraphSeries::append(GraphPoint point)
{
    while (!points_.empty() && points_.back().t > point.t)
        points_.pop_back();
    if (!points_.empty() && points_.back().t == point.t)
        points_.back() = point;
    else
        points_.push_back(point);
    if (points_.size() <= capacity_)
        return;
    // The oldest goes when what stays still covers the time kept.
    if (points_.back().t - points_[1].t >= GraphModel::kKeptSeconds) {
        points_.pop_front();
        return;
    }
    // Full before it holds the time it must: a source faster than the capacity foresaw. The older
    // half goes to half its samples (of each pair the one further from the sample kept before
    // it, so a peak stays), and the series goes on holding the whole time at less detail.
    const std::size_t older = points_.size() / 2;
    std::deque<GraphPoint> kept;
    kept.push_back(points_.front());
    std::size_t i = 1;
    for (; i + 1 < older; i += 2) {
        const GraphPoint& a = points_[i];
        const GraphPoint& b = points_[i + 1];
        const float before = kept.back().metric;
        kept.push_back(std::abs(a.metric - before) >= std::abs(b.metric - before) ? a : b);
    }
    kept.insert(kept.end(), points_.begin() + static_cast<long>(i), points_.end());
    points_ = std::move(kept);
}

void GraphSeries::setUnits(std::string metric, std::string us, bool isSwitch)
{
    metricUnit_ = std::move(metric);
    usUnit_ = std::move(us);
    isSwitch_ = isSwitch;
}

std::vector<QPointF> GraphSeries::drawPoints(double from, double to, int buckets, bool us) const
{
    std::vector<QPointF> out;
    auto value = [us](const GraphPoint& p) { return static_cast<double>(us ? p.us : p.metric); };
    auto first = std::lower_bound(points_.begin(), points_.end(), from,
                                  [](const GraphPoint& p, double t) { return p.t < t; });
    auto end = std::upper_bound(points_.begin(), points_.end(), to, [](double t, const GraphPoint& p) { return t < p.t; });
    // The sample before the range and the one after it carry the line to the edges.
    if (first != points_.begin())
        --first;
    if (end != points_.end())
        ++end;
    if (first == end)
        return out;
    if (isSwitch_) {
        // A switch holds its state until the next change: only changes are drawn, as steps.
        double held = value(*first);
        out.emplace_back(first->t, held);
        for (auto it = std::next(first); it != end; ++it) {
            if (value(*it) != held) {
                out.emplace_back(it->t, held);
                held = value(*it);
                out.emplace_back(it->t, held);
            }
        }
        const auto& lastOne = *std::prev(end);
        if (out.back().x() != lastOne.t)
            out.emplace_back(lastOne.t, held);
        return out;
    }
    const double width = (to - from) / std::max(buckets, 1);
    if (std::distance(first, end) <= 2L * std::max(buckets, 1) || width <= 0) {
        for (auto it = first; it != end; ++it)
            out.emplace_back(it->t, value(*it));
        return out;
    }
    // Per bucket, the lowest and the highest sample in the order they came, so peaks survive.
    auto it = first;
    while (it != end) {
        // A sample's bucket is worked out one way for all, so rounding cannot put a sample past
        // the end of the bucket it opens; each turn takes at least that sample.
        auto bucketOf = [from, width](const GraphPoint& p) { return std::floor((p.t - from) / width); };
        const double bucket = bucketOf(*it);
        auto low = it, high = it;
        for (++it; it != end && bucketOf(*it) == bucket; ++it) {
            if (value(*it) < value(*low))
                low = it;
            if (value(*it) > value(*high))
                high = it;
        }
        if (low == high) {
            out.emplace_back(low->t, value(*low));
            continue;
        }
        const auto a = std::min(low, high), b = std::max(low, high);
        out.emplace_back(a->t, value(*a));
        out.emplace_back(b->t, value(*b));
    }
    return out;
}

GraphModel::GraphModel(std::size_t pointsPerSeries, QObject* parent) : QObject(parent), pointsPerSeries_(pointsPerSeries)
{
}

GraphSeries* GraphModel::findSeries(const std::string& id)
{
    auto it = std::find_if(series_.begin(), series_.end(), [&id](const GraphSeries& s) { return s.id() == id; });
    return it == series_.end() ? nullptr : &*it;
}

const GraphSeries* GraphModel::series(const std::string& id) const
{
    return const_cast<GraphModel*>(this)->findSeries(id);
}

GraphSeries* GraphModel::enlist(const std::string& id, const std::string& label, bool ticked, bool numeric,
                                bool& changed)
{
    auto item = std::find_if(items_.begin(), items_.end(), [&id](const Item& i) { return i.id == id; });
    if (item == items_.end()) {
        items_.push_back({id, label, numeric});
        changed = true;
    } else if (numeric && !item->numeric) {
        item->numeric = true;
        changed = true;
    }
    GraphSeries* series = findSeries(id);
    const bool wanted = !userPicked_ ? (ticked && numeric && series_.size() < kDefaultSeries)
                                     : std::find(picked_.begin(), picked_.end(), id) != picked_.end();
    if (!series && wanted && numeric && series_.size() < kMaxSeries) {
        series_.emplace_back(id, label, pointsPerSeries_);
        series = &series_.back();
        changed = true;
    }
    return series;
}

void GraphModel::list(const std::string& id, const std::string& label, bool ticked, const std::string& metric,
                      const std::string& us)
{
    bool changed = false;
    enlist(id, label, ticked, PlotValueOf(metric) || PlotValueOf(us), changed);
    if (changed)
        emit layoutChanged();
}

void GraphModel::offer(const std::string& id, const std::string& label, bool ticked, const std::string& metric,
                       const std::string& us, double t)
{
    const auto metricValue = PlotValueOf(metric);
    const auto usValue = PlotValueOf(us);
    // An item with one numeric cell (a switch has only its metric one) plots that in both systems.
    const bool numeric = metricValue || usValue;
    bool changed = false;
    GraphSeries* series = enlist(id, label, ticked, numeric, changed);
    if (series && numeric) {
        const PlotValue m = metricValue ? *metricValue : *usValue;
        const PlotValue u = usValue ? *usValue : *metricValue;
        // A unit first seen blank (a row shown before its US text came) is taken when it comes.
        // A cell that shows no number (the US one of "O2 voltage" reads "trim 0.0 %") plots the
        // other cell's number, and so its unit.
        std::string metricUnit = metricValue ? metricValue->unit : usValue->unit,
                    usUnit = usValue ? usValue->unit : metricValue->unit;
        if (metricUnit.empty())
            metricUnit = series->unit(false);
        if (usUnit.empty())
            usUnit = series->unit(true);
        if (series->empty() || metricUnit != series->unit(false) || usUnit != series->unit(true)) {
            changed = true;
            series->setUnits(std::move(metricUnit), std::move(usUnit), m.isSwitch);
        }
        series->append({t, static_cast<float>(m.value), static_cast<float>(u.value)});
    }
    if (changed)
        emit layoutChanged();
    if (series && numeric)
        emit pointsChanged();
}

void GraphModel::clear()
{
    items_.clear();
    series_.clear();
    emit layoutChanged();
    emit pointsChanged();
}

std::vector<std::string> GraphModel::plotted() const
{
    std::vector<std::string> ids;
    for (const GraphSeries& s : series_)
        ids.push_back(s.id());
    return ids;
}

void GraphModel::setPlotted(const std::vector<std::string>& ids)
{
    userPicked_ = true;
    picked_.assign(ids.begin(), ids.begin() + static_cast<long>(std::min(ids.size(), kMaxSeries)));
    std::vector<GraphSeries> kept;
    for (const std::string& id : picked_) {
        if (GraphSeries* s = findSeries(id))
            kept.push_back(std::move(*s));
        else if (auto item = std::find_if(items_.begin(), items_.end(), [&id](const Item& i) { return i.id == id; });
                 item != items_.end() && item->numeric)
            kept.emplace_back(id, item->label, pointsPerSeries_);
    }
    series_ = std::move(kept);
    emit layoutChanged();
    emit pointsChanged();
}

void GraphModel::setUs(bool us)
{
    if (us == us_)
        return;
    us_ = us;
    emit layoutChanged();
}

double GraphModel::firstTime() const
{
    double first = std::numeric_limits<double>::max();
    for (const GraphSeries& s : series_)
        if (!s.empty())
            first = std::min(first, s.at(0).t);
    return first == std::numeric_limits<double>::max() ? 0 : first;
}

double GraphModel::lastTime() const
{
    double last = std::numeric_limits<double>::lowest();
    for (const GraphSeries& s : series_)
        if (!s.empty())
            last = std::max(last, s.last().t);
    return last == std::numeric_limits<double>::lowest() ? 0 : last;
}

std::size_t GraphModel::pointCount() const
{
    std::size_t n = 0;
    for (const GraphSeries& s : series_)
        n += s.size();
    return n;
}

std::string GraphModel::csv() const
{
    std::ostringstream out;
    out << "Time (s)";
    std::map<double, std::vector<std::string>> lines;
    for (std::size_t k = 0; k < series_.size(); ++k) {
        const GraphSeries& s = series_[k];
        const std::string& unit = s.unit(us_);
        out << ',' << CsvField(unit.empty() ? s.label() : s.label() + " (" + unit + ")");
        for (std::size_t i = 0; i < s.size(); ++i) {
            auto& line = lines[s.at(i).t];
            line.resize(series_.size());
            line[k] = QString::number(us_ ? s.at(i).us : s.at(i).metric).toStdString();
        }
    }
    out << "\r\n";
    for (auto& [t, values] : lines) {
        out << QString::number(t, 'f', 3).toStdString();
        values.resize(series_.size());
        for (const std::string& v : values)
            out << ',' << v;
        out << "\r\n";
    }
    return out.str();
}

} // namespace kvx
