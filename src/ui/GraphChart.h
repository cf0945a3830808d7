#pragma once

#include "ui/GraphPicture.h"

#include <QString>
#include <QWidget>

namespace kvx {
class GraphModel;
}

namespace kvx::ui {

// Draws a GraphModel: one time axis shared by every item, and a value scale per item in the
// item's colour, each scale on round numbers with its five marks on the same grid lines (a
// switch's scale reads OFF and ON). Above the plot a key names every item with its unit, in as
// many rows as the names need. Wheel zooms the time axis, dragging pans it; a move away from the
// newest samples stops following them until follow() is called, and hold() keeps the view where
// it is while samples keep coming. It paints itself: eight lines and their scales redraw in a
// millisecond or two, where a general chart's layout of nine axes took some 20.
class GraphChart : public QWidget {
    Q_OBJECT
public:
    static constexpr double kDefaultSpan = 60;

    explicit GraphChart(const GraphModel& model, QWidget* parent = nullptr);

    // The time axis title ("Time (s)", or "Frame" for a log without times).
    void setTimeTitle(const QString& title);
    // Shows the whole of what the model holds.
    void showAll();
    bool following() const { return following_; }
    void follow();
    // Held, the view stays on the samples it shows (pan and zoom still move it) and follow()
    // waits until release().
    void hold();
    void release();
    bool held() const { return held_; }
    void panBy(double seconds);
    void zoomBy(double factor);
    double viewStart() const { return end_ - span_; }
    double viewEnd() const { return end_; }
    // What was last drawn, and where.
    const GraphPicture& picture() const { return picture_; }
    const GraphGeometry& geometry() const { return geometry_; }

    QSize minimumSizeHint() const override;

    // Redraws the lines from the model for the range shown; the window calls it on a timer so a
    // fast source does not redraw for each sample.
    void redraw();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    // Takes the plotted items' names, colours and kinds from the model.
    void rebuild();
    void layOut();

    const GraphModel& model_;
    GraphPicture picture_;
    GraphGeometry geometry_;
    double span_ = kDefaultSpan;
    double end_ = kDefaultSpan;
    bool following_ = true;
    bool wantsAll_ = false;
    bool held_ = false;
    bool followAfterHold_ = false;
    int dragX_ = -1;
};

} // namespace kvx::ui
