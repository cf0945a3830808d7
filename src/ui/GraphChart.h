#pragma once

#include <QChartView>
#include <QString>
#include <vector>

class QLineSeries;
class QValueAxis;

namespace kvx {
class GraphModel;
}

namespace kvx::ui {

// Draws a GraphModel: one time axis shared by every item, and a value scale per item in the
// item's colour. Wheel zooms the time axis, dragging pans it; a move away from the newest samples
// stops following them until follow() is called.
class GraphChart : public QChartView {
    Q_OBJECT
public:
    static constexpr double kDefaultSpan = 60;

    explicit GraphChart(const GraphModel& model, QWidget* parent = nullptr);

    // The time axis title ("Time (s)", or "Frame" for a log without times).
    void setTimeTitle(const QString& title);
    double span() const { return span_; }
    void setSpan(double seconds);
    // Shows the whole of what the model holds.
    void showAll();
    bool following() const { return following_; }
    void follow();
    void panBy(double seconds);
    void zoomBy(double factor);
    double viewStart() const { return end_ - span_; }
    double viewEnd() const { return end_; }

    // Redraws the lines from the model for the range shown; the window calls it on a timer so a
    // fast source does not redraw for each sample.
    void redraw();

signals:
    void viewMoved();

protected:
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void rebuild();

    const GraphModel& model_;
    QValueAxis* timeAxis_ = nullptr;
    QString timeTitle_ = QStringLiteral("Time (s)");
    std::vector<QLineSeries*> lines_;
    std::vector<QValueAxis*> scales_;
    double span_ = kDefaultSpan;
    double end_ = kDefaultSpan;
    bool following_ = true;
    bool wantsAll_ = false;
    int dragX_ = -1;
};

} // namespace kvx::ui
