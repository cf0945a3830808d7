#pragma once

#include "garage/ProgramFolders.h"
#include "link/Clock.h"
#include "link/LinkSession.h"
#include "log/LogController.h"
#include "log/LogFile.h"
#include "log/LogFormat.h"
#include "log/ReplayStopwatch.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "support/LogFiles.h"
#include "support/RecordingShell.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <string>
#include <vector>

namespace kvx::test {

// A stopwatch on virtual time: sleeping moves the clock, so pacing is exact and instant.
class VirtualStopwatch final : public log::ReplayStopwatch {
public:
    link::VirtualClock clock;
    int sleeps = 0;

    void StartStopwatch() override { start_ = lap_ = clock.now(); }
    void LapStopwatch() override { lap_ = clock.now(); }
    link::FixedSeconds ReadStopwatch() const override { return (lap_ - start_) / 100; }
    void sleepFor(link::Micros duration) override
    {
        ++sleeps;
        clock.sleepFor(duration);
    }

private:
    link::Micros start_ = 0, lap_ = 0;
};

// A session for the log code: it decodes through the link but never opens a port.
struct LogRig {
    link::VirtualClock linkClock;
    link::LinkSession link{link::WireFactory{}, linkClock};
    MainScreen screen;
    RecordingShell shell;
    Session session{link, screen, shell};
    QTemporaryDir dir;

    LogRig() { QDir(dir.path()).mkdir("Log"); }
    garage::ProgramFolders folder() const { return garage::foldersBeside(dir.path()); }
    std::string file(const std::string& name) const { return QDir(dir.path()).filePath(QString::fromStdString(name)).toStdString(); }
};


// A player of generic logs whose handler keeps every frame it is given, pacing on virtual time.
struct Player {
    LogRig rig;
    VirtualStopwatch stopwatch;
    std::vector<std::string> shown;
    log::LogController controller{
        rig.session, stopwatch,
        log::FrameHandlers{{log::kGenericHeader, {{}, [this](const std::string& f) { shown.push_back(f); }}}}};
    Player() { controller.setSpeed(0); }
    std::string path() const { return rig.file("Log/drive.log"); }
};

} // namespace kvx::test
