#pragma once

#include "log/LogController.h"

#include <QWidget>
#include <functional>
#include <memory>

class QLabel;
class QPushButton;
class QSlider;
class QToolButton;

namespace kvx {
struct Session;
}

namespace kvx::log {

// The player window: renders a LogController and forwards its controls to it.
class frmLogController : public QWidget {
    Q_OBJECT
public:
    // The player of the session's link and screen.
    frmLogController(Session& session, QWidget* parent);
    frmLogController(Session& session, std::unique_ptr<ReplayStopwatch> stopwatch, FrameHandlers handlers,
                     LiveDecoding decoding, QWidget* parent);
    ~frmLogController() override;

    LogController& controller() { return controller_; }
    // Replaces the open dialog (tests, scripted use); an empty text means cancelled.
    void setFileChooser(std::function<QString()> chooser) { chooseFile_ = std::move(chooser); }
    void setExportChooser(std::function<QString()> chooser) { chooseExport_ = std::move(chooser); }

    void imgOpen_Click();
    void imgPlay_Click();
    void imgStop_Click();
    void imgRewind_Click();
    void exportCsv();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QString logFolder() const;
    void render();

    Session& session_;
    std::unique_ptr<ReplayStopwatch> stopwatch_;
    LiveDecoding decoding_;
    LogController controller_;
    std::function<QString()> chooseFile_;
    std::function<QString()> chooseExport_;

    QToolButton *imgOpen_, *imgPlay_, *imgStop_, *imgRewind_;
    QSlider *sldLogFrame_, *sldSpeed_;
    QLabel *lblFrame_, *lblSpeed_, *lblFile_, *lblTframes_;
    QPushButton* cmdExportCsv_;
};

} // namespace kvx::log
