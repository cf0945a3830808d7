#pragma once

#include <QObject>
#include <functional>
#include <optional>

namespace kvx {
class GraphModel;
class GridModel;
}

namespace kvx::data {

// Hands every value the live-data grid shows to a graph, with the time the given clock says (the
// session's clock live, the frame's receive time in a replay). A grid laid out anew (a connection,
// another log) starts the graph afresh.
class GraphFeed : public QObject {
    Q_OBJECT
public:
    GraphFeed(GridModel& grid, GraphModel& graph, std::function<double()> now, QObject* parent = nullptr);

    // While held the grid's values are not taken (the whole log is drawn at once instead).
    void setHeld(bool held) { held_ = held; }
    bool held() const { return held_; }

private:
    void take(int row, int col);
    // Hands a row that shows a value to the graph: as a sample at time t, or only listed without t.
    void pass(int row, std::optional<double> t);

    GridModel& grid_;
    GraphModel& graph_;
    std::function<double()> now_;
    bool held_ = false;
};

} // namespace kvx::data
