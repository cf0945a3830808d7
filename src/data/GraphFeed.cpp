#include "data/GraphFeed.h"

#include "data/GridLayouts.h"
#include "session/GraphModel.h"
#include "session/GridModel.h"

namespace kvx::data {

GraphFeed::GraphFeed(GridModel& grid, GraphModel& graph, std::function<double()> now, QObject* parent)
    : QObject(parent), grid_(grid), graph_(graph), now_(std::move(now))
{
    connect(&grid_, &GridModel::cellChanged, this, &GraphFeed::take);
    connect(&grid_, &GridModel::shapeChanged, this, [this] {
        if (!held_)
            graph_.clear();
    });
    // Opened while the grid already shows values, the graph lists those rows in the grid's order,
    // so its list and the first four plotted follow the grid rather than where the polling stood.
    if (grid_.cols() > AltValueColumn)
        for (int row = 1; row < grid_.rows(); ++row)
            pass(row, std::nullopt);
}

void GraphFeed::take(int row, int col)
{
    // Every writer of the grid (live data, the combo's rows, a replay, the clearing of readings)
    // writes a row's metric text and then its US text: the row is whole once the US one is in.
    // Taken at the metric write, the row would pair a new metric text with the US text before it
    // (or with none, so the US unit goes missing), and a clearing would plot the US value as metric.
    if (held_ || col != AltValueColumn || row < 1 || row >= grid_.rows() || grid_.cols() <= AltValueColumn)
        return;
    pass(row, now_());
}

void GraphFeed::pass(int row, std::optional<double> t)
{
    const std::string& metric = grid_.text(row, ValueColumn);
    const std::string& us = grid_.text(row, AltValueColumn);
    // Stopping blanks the cells; a blank is no value.
    if (metric.empty() && us.empty())
        return;
    const std::string& id = grid_.text(row, PidColumn);
    const std::string& label = grid_.text(row, DescriptionColumn);
    const bool ticked = grid_.text(row, MarkerColumn) != kEmptyMarker;
    if (t)
        graph_.offer(id, label, ticked, metric, us, *t);
    else
        graph_.list(id, label, ticked, metric, us);
}

} // namespace kvx::data
