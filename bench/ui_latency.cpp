// While live data polls the virtual vehicle on the real clock, measures the longest stretch in
// which the main window processes no events and the share of one CPU the process uses.
#include "app/SessionActions.h"
#include "app/StartUp.h"
#include "app/frmMain.h"
#include "link/Clock.h"
#include "link/LinkSession.h"
#include "ports/WireFactory.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "ui/QtShell.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <ctime>

using namespace kvx;

namespace {

// The window's shell, but a box is printed rather than shown: a modal box (a missing
// description file, say) would stop the measurement until someone closed it.
class PrintingShell : public ui::QtShell {
public:
    void messageBox(const std::string& title, const std::string& text, MessageIcon) override
    {
        std::fprintf(stderr, "%s: %s\n", title.c_str(), text.c_str());
    }
};

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    QApplication application(argc, argv);
    const int seconds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 10;

    link::SteadyClock clock;
    link::LinkSession link(ports::makeWireFactory(clock), clock);
    MainScreen screen;
    PrintingShell shell;
    Session session(link, screen, shell);
    const std::string programFolder = QCoreApplication::applicationDirPath().toStdString();
    app::StartSession(session, true, programFolder);
    app::MainActions actions = app::BindSessionActions(session, programFolder);
    app::frmMain window(screen, actions);
    window.show();

    if (!actions.ConnectModule(ModuleGeneric)) {
        std::fprintf(stderr, "could not connect to the virtual vehicle\n");
        return 1;
    }

    // A 5 ms heartbeat: the gap between two beats is how long the window went without events.
    QElapsedTimer sinceBeat;
    qint64 longestGap = 0;
    long beats = 0;
    QTimer heartbeat;
    heartbeat.setTimerType(Qt::PreciseTimer);
    heartbeat.setInterval(5);
    QObject::connect(&heartbeat, &QTimer::timeout, [&] {
        if (beats++ > 0)
            longestGap = std::max(longestGap, sinceBeat.elapsed());
        sinceBeat.restart();
    });

    QElapsedTimer wall;
    std::clock_t cpuStart = 0;
    QTimer::singleShot(0, [&] {
        heartbeat.start();
        sinceBeat.start();
        wall.start();
        cpuStart = std::clock();
        QTimer::singleShot(seconds * 1000, [&] { actions.Stop(); });
        actions.RequestMode1();
        const double cpu = double(std::clock() - cpuStart) / CLOCKS_PER_SEC;
        const double elapsed = double(wall.elapsed()) / 1000.0;
        std::printf("live data for %.1f s: longest time without events %lld ms, CPU %.1f %% of one core, "
                    "%ld heartbeats\n",
                    elapsed, longestGap, 100.0 * cpu / elapsed, beats);
        actions.Disconnect();
        QApplication::quit();
    });
    return application.exec();
}
