#pragma once

#include "log/ReplayFrames.h"
#include "session/GraphModel.h"

#include <QWidget>
#include <functional>
#include <memory>

class QComboBox;
class QListWidget;
class QPushButton;
class QTimer;

namespace kvx {
struct Session;
namespace data {
class GraphFeed;
}
namespace log {
class LogController;
}
namespace ui {
class GraphChart;
}
} // namespace kvx

namespace kvx::app {

// The graph window ("Graph"): plots the numeric values of the live-data grid while live data or
// a replay runs, up to eight items on one time axis with a scale each.
class frmGraph : public QWidget {
    Q_OBJECT
public:
    frmGraph(Session& session, QWidget* parent = nullptr);
    ~frmGraph() override;

    GraphModel& model() { return model_; }
    ui::GraphChart& chart() { return *chart_; }
    // Follows the player: each frame is plotted at its receive time, and a play at no delay
    // draws the whole log at once.
    void followPlayer(log::LogController& player);

    // Replace the save dialogs (tests, scripted use); an empty text means cancelled.
    void setPictureChooser(std::function<QString()> chooser) { choosePicture_ = std::move(chooser); }
    void setDataChooser(std::function<QString()> chooser) { chooseData_ = std::move(chooser); }
    void savePicture();
    void saveData();
    // Draws what has arrived since the last drawing (the window does so on a timer).
    void refresh();

protected:
    void showEvent(QShowEvent* event) override;

private:
    // The first time it shows: beside the main window where the screen has room, else over it
    // a little down and right; never past the screen's edges.
    void place();
    void listItems();
    void pickFromList();
    double now() const;

    Session& session_;
    log::LiveDecoding decoding_;
    GraphModel model_;
    std::unique_ptr<data::GraphFeed> feed_;
    double replayTime_ = 0;
    bool replayTimed_ = false; // a frame of the log open in the player carried its time
    long long liveOrigin_ = 0;
    bool dirty_ = false;
    bool placed_ = false;
    std::function<QString()> choosePicture_, chooseData_;

    QListWidget* lstItems_;
    QComboBox* cmbUnits_;
    QPushButton *cmdPause_, *cmdFollow_, *cmdWhole_, *cmdSavePicture_, *cmdSaveData_;
    ui::GraphChart* chart_;
    QTimer* tmrRedraw_;
};

} // namespace kvx::app
