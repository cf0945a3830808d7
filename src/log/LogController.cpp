#include "log/LogController.h"

#include "log/LogFormat.h"
#include "log/LogHeader.h"
#include "log/Recorder.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

#include <QFileInfo>
#include <algorithm>

namespace kvx::log {

namespace {

const std::string kPlayerTitle = "LOG CONTROLLER";
// Waits are cut into slices this long so that stop and the speed slider act within a slice.
constexpr link::Micros kWaitSlice = link::ms(10);

// Frames from the first frame record up to the end, or up to the first damaged record (playback
// reports that one when it gets there).
std::vector<std::string> readFrames(LogFile& file)
{
    std::vector<std::string> frames;
    try {
        for (long record = kFirstFrameRecord;; ++record) {
            auto frame = file.readRecord(record);
            if (!frame)
                break;
            frames.push_back(std::move(*frame));
        }
    } catch (const LogError&) {
        // Kept as far as it goes; the damaged record is reported when playback reaches it.
    }
    return frames;
}

} // namespace

LogController::LogController(Session& session, ReplayStopwatch& stopwatch, FrameHandlers handlers)
    : session_(session), stopwatch_(stopwatch), handlers_(std::move(handlers))
{
}

LogController::~LogController() = default;

bool LogController::failOpen(const std::string& title, const std::string& text, bool information)
{
    closeFile();
    session_.shell.messageBox(title, text, information ? MessageIcon::Information : MessageIcon::Exclamation);
    return false;
}

bool LogController::OpenLogFile(const std::string& path)
{
    file_.reset();
    opened_ = false;
    LogHeaderRecords records;
    try {
        file_ = std::make_unique<LogFile>(path, LogFile::Mode::Read);
        records = ReadHeaderRecords(*file_);
    } catch (const LogError& e) {
        return failOpen("Error", e.what(), false);
    }
    const auto recognised = RecogniseHeader(records.header);
    if (!recognised)
        return failOpen(kPlayerTitle, "Unknown Data Type", true);

    std::string countText = records.frameCount;
    // A recording that was never stopped has no count; its frames are still all there.
    if (countText.empty())
        countText = std::to_string(std::max(0L, file_->recordCount() - (kFirstFrameRecord - 1)));
    const long count = FrameCountValue(countText);
    if (count > kMaxPlayableFrames)
        return failOpen("Error", "This log holds " + countText + " frames; the player can show at most " +
                                     std::to_string(kMaxPlayableFrames) + ".",
                        false);

    session_.LogHeader = recognised->header;
    session_.LogGridRows = records.gridRows.empty() && recognised->emptyGridRowsAs32 ? "32" : records.gridRows;
    if (recognised->moduleIndex)
        session_.ModuleIndex = *recognised->moduleIndex;
    session_.LogPath = path;
    path_ = path;
    maximum_ = static_cast<int>(count);
    position_ = std::min(position_, maximum_);
    fileLabel_ = "File: " + QFileInfo(QString::fromStdString(path)).fileName().toStdString();
    fileToolTip_ = path;
    totalFramesLabel_ = "Total Frames: " + countText;
    opened_ = true;
    emit changed();
    return true;
}

bool LogController::open(const std::string& path)
{
    stop();
    if (!OpenLogFile(path))
        return false;
    setPosition(0);
    auto handler = handlers_.find(session_.LogHeader);
    if (handler != handlers_.end() && handler->second.prepare)
        handler->second.prepare(readFrames(*file_));
    session_.screen.TabStrip1.selectCaption("LIVE DATA");
    return true;
}

void LogController::closeFile()
{
    stop();
    file_.reset();
    opened_ = false;
    fileLabel_ = "File:";
    fileToolTip_.clear();
    emit changed();
}

void LogController::play()
{
    if (!opened_ || session_.Replaying)
        return;
    auto handler = handlers_.find(session_.LogHeader);
    if (handler == handlers_.end()) {
        session_.shell.messageBox(kPlayerTitle, "This player cannot replay logs headed \"" + session_.LogHeader + "\".",
                                  MessageIcon::Information);
        return;
    }
    session_.Replaying = true;
    emit playStarted();
    session_.LogLastRecord = PlayLog(position_ + kFirstFrameRecord - 1, handler->second);
    emit playEnded();
}

void LogController::stop()
{
    session_.Replaying = false;
}

void LogController::rewind()
{
    if (!session_.Replaying)
        setPosition(0);
}

long LogController::PlayLog(long record, const FrameHandler& handler)
{
    setStatus("LOG...PLAY");
    // A handle of its own, read afresh from the path: a file opened from the window while this
    // loop waits must not pull the file from under it.
    std::unique_ptr<LogFile> file;
    try {
        file = std::make_unique<LogFile>(path_, LogFile::Mode::Read);
    } catch (const LogError& e) {
        session_.Replaying = false;
        setStatus("LOG...STOP");
        session_.shell.messageBox("Error", e.what(), MessageIcon::Exclamation);
        return record;
    }
    for (;;) {
        if (!session_.Replaying) {
            setStatus("LOG...STOP");
            break;
        }
        session_.shell.processEvents();
        std::optional<std::string> frame;
        try {
            frame = file->readRecord(record);
        } catch (const LogError& e) {
            session_.shell.messageBox("Error", e.what(), MessageIcon::Exclamation);
        }
        if (!frame) {
            setStatus("LOG...END");
            session_.Replaying = false;
            break;
        }
        const std::optional<long> ms = file->readRecordTime(record);
        emit frameShown(ms ? static_cast<double>(*ms) / 1000.0 : static_cast<double>(record - (kFirstFrameRecord - 1)),
                        ms.has_value());
        handler.show(*frame);
        ++record;
        setPosition(static_cast<int>(std::min<long>(record - kFirstFrameRecord, maximum_)));
        waitBetweenFrames();
    }
    return record;
}

void LogController::waitBetweenFrames()
{
    stopwatch_.StartStopwatch();
    link::FixedSeconds elapsed = 0;
    for (;;) {
        // Read each turn so that a move of the speed slider takes effect at once.
        const link::FixedSeconds target = static_cast<link::FixedSeconds>(speedMs_) * 10;
        if (elapsed >= target || !session_.Replaying)
            return;
        const link::Micros remaining = (target - elapsed) * 100;
        stopwatch_.sleepFor(std::min(remaining, kWaitSlice));
        stopwatch_.LapStopwatch();
        elapsed = stopwatch_.ReadStopwatch();
        session_.shell.processEvents();
    }
}

void LogController::formLoad()
{
    session_.screen.control("Connect").setEnabled(false);
    auto& chkLog = session_.screen.control("chkLog");
    if (chkLog.checked()) {
        chkLog.setChecked(false);
        StopLogging(session_);
    }
}

bool LogController::queryUnload()
{
    if (session_.Replaying)
        return false;
    // A session opened while the player stood open keeps its Connect button off.
    session_.screen.control("Connect").setEnabled(session_.LinkDown);
    setStatus("");
    file_.reset();
    return true;
}

void LogController::setPosition(int frame)
{
    frame = std::clamp(frame, 0, maximum_);
    if (frame == position_)
        return;
    position_ = frame;
    emit changed();
}

void LogController::setSpeed(int ms)
{
    ms = std::clamp(ms, 0, kMaxSpeedMs);
    if (ms == speedMs_)
        return;
    speedMs_ = ms;
    emit changed();
}

void LogController::setStatus(const std::string& text)
{
    session_.screen.StatusBar1.setText(1, text);
}

} // namespace kvx::log
