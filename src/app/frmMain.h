#pragma once

#include "app/MainActions.h"
#include "session/MainScreen.h"
#include "ui/ControlResizer.h"

#include <QPoint>
#include <QPointer>
#include <QWidget>
#include <array>
#include <functional>
#include <optional>

class QLabel;
class QModelIndex;
class QPushButton;
class QSlider;
class QStatusBar;
class QTabBar;
class QTimer;
class QToolBar;

namespace kvx::app {

// The main window: toolbar, tab strip with one panel per service, status bar and mode buttons.
// It renders the MainScreen models and hands every click to MainActions.
class frmMain : public QWidget {
    Q_OBJECT
public:
    frmMain(MainScreen& screen, MainActions actions, QWidget* parent = nullptr);

    ui::ControlResizer& resizer() { return resizer_; }
    // Runs the toolbar button with this key, as a click on it does.
    void toolbarClick(const QString& key);
    // Makes the log player window; the "Log Controller" button stays off until one is given.
    void setLogControllerFactory(std::function<QWidget*(QWidget* parent)> factory);
    QWidget* logController() const { return logController_; }
    // Makes the graph window; the "Graph" button stays off until one is given.
    void setGraphFactory(std::function<QWidget*(QWidget* parent)> factory);
    QWidget* graph() const { return graph_; }

signals:
    void connectRequested();
    // Opens the settings dialog and returns when it has closed.
    void settingRequested();
    void aboutRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* buildFrame(int number);
    QPushButton* addButton(QWidget* parent, const QString& name, const QString& caption, QRect geometry,
                           const std::function<void()>& action);
    void buildFrames();
    void clickLiveRow(const QModelIndex& index);
    bool liveGridKey(QObject* watched, QEvent* event);
    void placeLogController();
    void buildBottomRow();
    void showTabs();
    void showSelectedPanel();
    void trackPort();
    void showLogController();
    void showGraph();
    void followPlayer();

    MainScreen& screen_;
    MainActions actions_;
    ui::ControlResizer resizer_;

    QToolBar* toolbar_ = nullptr;
    QTabBar* tabs_ = nullptr;
    QStatusBar* status_ = nullptr;
    QSlider* slider_ = nullptr;
    std::array<QWidget*, 7> frames_{};
    QTimer* tmrKeepAlive_ = nullptr;
    QTimer* tmrKeepAliveEnhance_ = nullptr;
    QTimer* tmrTracker_ = nullptr;
    std::function<QWidget*(QWidget*)> makeLogController_;
    QPointer<QWidget> logController_;
    std::optional<QPoint> playerPos_;
    std::function<QWidget*(QWidget*)> makeGraph_;
    QPointer<QWidget> graph_;
};

} // namespace kvx::app
