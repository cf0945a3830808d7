// Frames replayed per second at delay 0 into a grid shown offscreen, and the recorder's cost per
// frame; each figure is the median of several runs.
#include "garage/ProgramFolders.h"
#include "link/Clock.h"
#include "link/LinkSession.h"
#include "log/LogController.h"
#include "log/LogFormat.h"
#include "log/Recorder.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

#include <QApplication>
#include <QDir>
#include <QStandardItemModel>
#include <QTableView>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace {

using namespace kvx;
using Seconds = std::chrono::duration<double>;

class EventShell final : public Shell {
public:
    void messageBox(const std::string& title, const std::string& text, MessageIcon) override
    {
        std::fprintf(stderr, "%s: %s\n", title.c_str(), text.c_str());
    }
    void processEvents() override { QCoreApplication::processEvents(); }
};

class SteadyStopwatch final : public log::ReplayStopwatch {
public:
    void StartStopwatch() override { start_ = lap_ = clock_.now(); }
    void LapStopwatch() override { lap_ = clock_.now(); }
    link::FixedSeconds ReadStopwatch() const override { return (lap_ - start_) / 100; }
    void sleepFor(link::Micros d) override { clock_.sleepFor(d); }

private:
    link::SteadyClock clock_;
    link::Micros start_ = 0, lap_ = 0;
};

// Scales like the live decoders do (rpm, speed, temperature), without the link.
log::LiveDecoding benchDecoding()
{
    return {[](const std::string& m, int selector) {
                const int a = std::stoi(m.substr(10, 2), nullptr, 16);
                return std::to_string(selector == 1 ? a * 4 : a * 5 / 2) + (selector == 1 ? " km/h" : " mph");
            },
            [](const std::string& pid) { return "Parameter " + pid; }};
}

// The grid as the main window shows it: a table view over the session's grid model.
void mirror(GridModel& grid, QStandardItemModel& model)
{
    QObject::connect(&grid, &GridModel::shapeChanged, [&grid, &model] {
        model.setRowCount(grid.rows());
        model.setColumnCount(grid.cols());
    });
    QObject::connect(&grid, &GridModel::cellChanged, [&grid, &model](int row, int col) {
        model.setData(model.index(row, col), QString::fromStdString(grid.text(row, col)));
    });
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir dir;
    QDir(dir.path()).mkdir("Log");

    // The log code reaches the screen and the shell, never the link.
    alignas(link::LinkSession) unsigned char linkPlace[sizeof(link::LinkSession)]{};
    MainScreen screen;
    EventShell shell;
    Session session(*reinterpret_cast<link::LinkSession*>(linkPlace), screen, shell);

    constexpr int kFrames = 20000;
    const char* pids[] = {"0C", "0D", "05", "0F", "10", "11", "04", "0B"};
    std::vector<double> recordCosts;
    for (int run = 0; run < 5; ++run) {
        log::StartLogging(session, garage::foldersBeside(dir.path()), QDateTime::currentDateTime());
        const auto start = std::chrono::steady_clock::now();
        for (int k = 0; k < kFrames; ++k)
            log::WriteLogFrame(session, std::string("486B1041") + pids[k % 8] + "1AF8" + "C4");
        recordCosts.push_back(Seconds(std::chrono::steady_clock::now() - start).count() / kFrames);
        log::StopLogging(session);
    }
    const std::string path = session.LogPath;

    QStandardItemModel model;
    mirror(screen.GridMode1, model);
    QTableView view;
    view.setModel(&model);
    view.show();

    SteadyStopwatch stopwatch;
    log::LogController player(session, stopwatch,
                              {{log::kGenericHeader, log::GenericFrameHandler(screen.GridMode1, benchDecoding())}});
    player.setSpeed(0);
    if (!player.open(path))
        return 1;
    std::vector<double> rates;
    for (int run = 0; run < 5; ++run) {
        player.rewind();
        const auto start = std::chrono::steady_clock::now();
        player.play();
        rates.push_back(kFrames / Seconds(std::chrono::steady_clock::now() - start).count());
    }
    std::printf("replay at delay 0 into an offscreen grid: %.0f frames/s (median of 5 x %d frames)\n",
                median(rates), kFrames);
    std::printf("recorder: %.2f us per frame (median of 5 x %d frames)\n", median(recordCosts) * 1e6, kFrames);
    return 0;
}
