#pragma once

#include <QObject>
#include <QPointF>
#include <deque>
#include <string>
#include <vector>

namespace kvx {

// One sample of an item: seconds on the graph's time axis and the value in both unit systems.
struct GraphPoint {
    double t = 0;
    float metric = 0;
    float us = 0;
};

// The samples of one plotted item, oldest first, never more than its capacity: past it the oldest
// go, unless they are younger than the time a graph keeps (GraphModel::kKeptSeconds), when the
// older half is thinned instead, so that time is always held whatever the rate of the source.
class GraphSeries {
public:
    GraphSeries(std::string id, std::string label, std::size_t capacity);

    const std::string& id() const { return id_; }
    const std::string& label() const { return label_; }
    const std::string& unit(bool us) const { return us ? usUnit_ : metricUnit_; }
    bool isSwitch() const { return isSwitch_; }
    std::size_t size() const { return points_.size(); }
    const GraphPoint& at(std::size_t i) const { return points_[i]; }
    const GraphPoint& last() const { return points_.back(); }
    bool empty() const { return points_.empty(); }

    // A sample earlier than the last one means the source went back (a rewound replay): the
    // samples from that time on are replaced rather than drawn backwards.
    void append(GraphPoint point);
    void setUnits(std::string metric, std::string us, bool isSwitch);

    // The samples between from and to, cut to at most two per bucket (the lowest and highest of
    // each, in time order) so a line of any length draws in the same time; switches as steps.
    std::vector<QPointF> drawPoints(double from, double to, int buckets, bool us) const;

private:
    std::string id_, label_, metricUnit_, usUnit_;
    bool isSwitch_ = false;
    std::size_t capacity_;
    std::deque<GraphPoint> points_;
};

// What the graph window plots: the items of the live grid or a replay it has seen, which of them
// are plotted (at most eight; by default the first four ticked numeric ones), and their samples.
class GraphModel : public QObject {
    Q_OBJECT
public:
    static constexpr std::size_t kMaxSeries = 8;
    static constexpr std::size_t kDefaultSeries = 4;
    // Samples kept per item: K-line polling gives an item at most some 20 replies a second, so
    // this holds the last 30 minutes in full at up to 66 a second, in about 2 MB per item; a
    // faster source has its older samples thinned rather than the time cut short.
    static constexpr std::size_t kPointsPerSeries = 120000;
    static constexpr double kKeptSeconds = 30 * 60;

    struct Item {
        std::string id, label;
        bool numeric = false;
    };

    explicit GraphModel(std::size_t pointsPerSeries = kPointsPerSeries, QObject* parent = nullptr);

    // A value arrived for an item (its two value texts); t in seconds. Items are listed in the
    // order first seen; only plotted items keep samples.
    void offer(const std::string& id, const std::string& label, bool ticked, const std::string& metric,
               const std::string& us, double t);
    // An item the grid showed before the graph was there: listed in its place, and plotted from
    // its next value when it is among the picked ones.
    void list(const std::string& id, const std::string& label, bool ticked, const std::string& metric,
              const std::string& us);
    // Forgets items and samples (a new connection, another log); the user's pick is kept for
    // items that come back.
    void clear();

    const std::vector<Item>& items() const { return items_; }
    // The plotted items in the order picked; setPlotted takes at most eight and keeps samples
    // of those already plotted.
    std::vector<std::string> plotted() const;
    void setPlotted(const std::vector<std::string>& ids);
    const GraphSeries* series(const std::string& id) const;

    bool us() const { return us_; }
    void setUs(bool us);
    // Earliest and latest sample time over the plotted items; 0 and 0 when there are none.
    double firstTime() const;
    double lastTime() const;
    std::size_t pointCount() const;

    // The plotted samples as CSV: "Time (s)" and a column per item ("Engine speed (rpm)"), a line
    // per sample time, blank where an item has no sample at that time.
    std::string csv() const;

signals:
    // Samples were added or dropped.
    void pointsChanged();
    // The items, the plotted ones or the unit system changed.
    void layoutChanged();

private:
    GraphSeries* findSeries(const std::string& id);
    // Lists the item (or marks it numeric) and gives it a series when it is to be plotted.
    GraphSeries* enlist(const std::string& id, const std::string& label, bool ticked, bool numeric, bool& changed);

    std::size_t pointsPerSeries_;
    std::vector<Item> items_;
    std::vector<GraphSeries> series_;
    std::vector<std::string> picked_; // the user's pick (which may be nothing at all)
    bool userPicked_ = false;         // until the user picks, the first four ticked numeric items
    bool us_ = false;
};

} // namespace kvx
