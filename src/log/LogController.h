#pragma once

#include "log/LogFile.h"
#include "log/ReplayFrames.h"
#include "log/ReplayStopwatch.h"

#include <QObject>
#include <memory>
#include <string>

namespace kvx {
struct Session;
}

namespace kvx::log {

// The player: opens a recorded log, and replays its frames into the live-data screen at the chosen
// pace, with stop, resume and rewind. The window only renders it and forwards its controls.
class LogController : public QObject {
    Q_OBJECT
public:
    static constexpr int kMaxSpeedMs = 1000;
    static constexpr int kDefaultSpeedMs = 100;

    LogController(Session& session, ReplayStopwatch& stopwatch, FrameHandlers handlers);
    ~LogController() override;

    // Opens the log at path and reads its fixed records; false (after telling the user why) when
    // the file cannot be read, is not a log the player knows, or is too long for the slider.
    bool OpenLogFile(const std::string& path);
    // OpenLogFile, then on success the position back to 0 and the grid laid out for the log.
    bool open(const std::string& path);

    // The open dialog was cancelled: the player is left without a file.
    void closeFile();

    // Plays from the position until the end or a stop; returns at once while already playing.
    void play();
    void stop();
    // Back to the first frame, unless playing.
    void rewind();

    // Replays from the given record until the end of the file or a stop; returns the record
    // after the last one read.
    long PlayLog(long startRecord, const FrameHandler& handler);

    // The player window opens / asks to close; closing is refused while playing.
    void formLoad();
    bool queryUnload();

    bool isOpen() const { return opened_; }
    int position() const { return position_; }
    int maximum() const { return maximum_; }
    void setPosition(int frame);
    int speed() const { return speedMs_; }
    void setSpeed(int ms);
    const std::string& fileLabel() const { return fileLabel_; }
    const std::string& fileToolTip() const { return fileToolTip_; }
    const std::string& totalFramesLabel() const { return totalFramesLabel_; }
    const std::string& path() const { return path_; }

signals:
    void changed();
    // A frame is about to be shown: its receive time in seconds, or its position when the log
    // has no times (timed false).
    void frameShown(double time, bool timed);
    void playStarted();
    void playEnded();

private:
    bool failOpen(const std::string& title, const std::string& text, bool information);
    void waitBetweenFrames();
    void setStatus(const std::string& text);

    Session& session_;
    ReplayStopwatch& stopwatch_;
    FrameHandlers handlers_;
    std::unique_ptr<LogFile> file_;
    std::string path_;
    bool opened_ = false;
    int position_ = 0;
    int maximum_ = 0;
    int speedMs_ = kDefaultSpeedMs;
    std::string fileLabel_ = "File:";
    std::string fileToolTip_;
    std::string totalFramesLabel_ = "Total Frames:";
};

} // namespace kvx::log
