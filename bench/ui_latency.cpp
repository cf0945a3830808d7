// How quickly the main window answers the user while a loop polls the virtual vehicle on the real
// clock, and whether any click goes missing:
//   stop   a click on STOP at a random moment of live-data polling, until Busy clears;
//   open   a click on the first combo list during combo polling, until the list shows;
//   close  a click on an entry of that list, until the list has closed;
//   stop2  then a click on the combo view's STOP, until Busy clears.
// Also the longest stretch without events and the share of one CPU the process used.
//
// The clicks come from a second thread that stands in for the window system: it posts them at
// moments the program does not choose, so a click may arrive in the middle of a request, as a
// real one does. The program itself runs on one thread.
//
// Usage: bench_ui_latency [trials per measure, default 15]
#include "RunningProgram.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QPointer>
#include <QPointingDevice>
#include <QPushButton>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

using namespace kvx;
using Clock = std::chrono::steady_clock;

namespace {

std::int64_t nowUs()
{
    return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now().time_since_epoch()).count();
}

// A moment the GUI thread marks and the injecting thread waits for; 0 until it happens.
struct Mark {
    std::atomic<std::int64_t> at{0};
    void set() { at = nowUs(); }
    void reset() { at = 0; }
    // Waits until the mark is set after `since`; the latency in milliseconds, or -1 when lost.
    double waitSince(std::int64_t since, int timeoutMs) const
    {
        const std::int64_t deadline = nowUs() + std::int64_t(timeoutMs) * 1000;
        while (nowUs() < deadline) {
            const std::int64_t t = at;
            if (t >= since)
                return double(t - since) / 1000.0;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return -1;
    }
};

// Where a click lands: a top-level window and a point in it, both read on the GUI thread.
struct Target {
    std::mutex lock;
    QPointer<QWindow> window;
    QPointF point;
    void set(QWindow* w, QPointF p)
    {
        const std::lock_guard<std::mutex> hold(lock);
        window = w;
        point = p;
    }
    bool aimed()
    {
        const std::lock_guard<std::mutex> hold(lock);
        return !window.isNull();
    }
};

// The pointer arriving, a press and a release, posted as the window system delivers them.
void postClick(Target& target, const QPointingDevice* mouse)
{
    QWindow* window = nullptr;
    QPointF point;
    {
        const std::lock_guard<std::mutex> hold(target.lock);
        window = target.window;
        point = target.point;
    }
    if (!window)
        return;
    QCoreApplication::postEvent(window, new QMouseEvent(QEvent::MouseMove, point, point, point, Qt::NoButton,
                                                        Qt::NoButton, Qt::NoModifier, mouse));
    for (QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const Qt::MouseButtons held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QCoreApplication::postEvent(window, new QMouseEvent(type, point, point, point, Qt::LeftButton, held,
                                                            Qt::NoModifier, mouse));
    }
}

void aim(Target& target, QWidget* widget, QPointF inWidget)
{
    QWidget* top = widget->window();
    target.set(top->windowHandle(), QPointF(widget->mapTo(top, inWidget.toPoint())));
}

struct Figures {
    std::vector<double> ms;
    int lost = 0;
    void add(double latency)
    {
        if (latency < 0)
            ++lost;
        else
            ms.push_back(latency);
    }
};

void print(const char* name, Figures f)
{
    std::sort(f.ms.begin(), f.ms.end());
    const double median = f.ms.empty() ? 0 : f.ms[f.ms.size() / 2];
    const double worst = f.ms.empty() ? 0 : f.ms.back();
    const double p90 = f.ms.empty() ? 0 : f.ms[f.ms.size() * 9 / 10];
    std::printf("%-6s %3zu clicks: median %6.1f ms, 90 %% %6.1f ms, max %6.1f ms, lost %d\n", name, f.ms.size(),
                median, p90, worst, f.lost);
}

// Watches the combo list's popup appear and go.
class PopupWatch : public QObject {
public:
    PopupWatch(QComboBox* combo, Mark& shown, Mark& hidden, Target& entry)
        : combo_(combo), shown_(shown), hidden_(hidden), entry_(entry)
    {
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == combo_->view()->window()) {
            if (event->type() == QEvent::Show) {
                entry_.set(nullptr, {});
                shown_.set();
            } else if (event->type() == QEvent::Hide) {
                hidden_.set();
            }
        }
        return false;
    }

public:
    // Aims at the entry below the current one, where the open list shows it now.
    void aimAtEntry()
    {
        QAbstractItemView* view = combo_->view();
        const int row = std::min(combo_->currentIndex() + 1, combo_->count() - 1);
        aim(entry_, view->viewport(), view->visualRect(view->model()->index(row, 0)).center());
    }

private:
    QComboBox* combo_;
    Mark& shown_;
    Mark& hidden_;
    Target& entry_;
};

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    QApplication application(argc, argv);
    const int trials = argc > 1 ? std::max(1, std::atoi(argv[1])) : 15;
    // The effect of a stop click is Busy cleared, which the stop routine does.
    Mark stopped;
    bench::RunningProgram program([&stopped](app::MainActions& actions) {
        for (std::function<void()>* stop : {&actions.Stop, &actions.StopLiveCombo})
            *stop = [inner = *stop, &stopped] {
                inner();
                stopped.set();
            };
    });
    if (!program.connect())
        return 1;
    app::frmMain& window = *program.window;
    Session& session = program.session;
    app::MainActions& actions = program.actions;
    MainScreen& screen = program.screen;
    auto* combo = window.findChild<QComboBox*>(QStringLiteral("cmbPid"));
    Mark shown, hidden;
    Target stopButton, comboButton, entry;
    PopupWatch watch(combo, shown, hidden, entry);
    application.installEventFilter(&watch);

    // A 5 ms heartbeat: the gap between two beats is how long the window went without events.
    std::int64_t lastBeat = 0, longestGap = 0;
    QTimer heartbeat;
    heartbeat.setTimerType(Qt::PreciseTimer);
    heartbeat.setInterval(5);
    QObject::connect(&heartbeat, &QTimer::timeout, [&] {
        const std::int64_t t = nowUs();
        if (lastBeat > 0)
            longestGap = std::max(longestGap, t - lastBeat);
        lastBeat = t;
    });

    // Each step runs on the GUI thread: aims the stop button of its tab and starts the loop there.
    std::atomic<bool> polling{false};
    auto startLoop = [&](int tab, const char* stopName, std::function<void()> start) {
        QMetaObject::invokeMethod(&window, [&, tab, stopName, start] {
            screen.TabStrip1.select(tab);
            aim(stopButton, window.findChild<QPushButton*>(QString::fromLatin1(stopName)),
                window.findChild<QPushButton*>(QString::fromLatin1(stopName))->rect().center());
            aim(comboButton, combo, combo->rect().center());
            lastBeat = 0;
            polling = true;
            start();
            polling = false;
        }, Qt::QueuedConnection);
        while (!polling)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    };

    std::map<std::string, Figures> figures;
    std::mt19937 random(20240611);
    auto pause = [&](int lowMs, int highMs) {
        std::this_thread::sleep_for(std::chrono::milliseconds(std::uniform_int_distribution<int>(lowMs, highMs)(random)));
    };
    const QPointingDevice* mouse = QPointingDevice::primaryPointingDevice();
    // A click that never took effect is counted lost, and the loop is ended for it so the next
    // trial can start.
    auto click = [&](Target& target, Mark& effect, const char* name) {
        effect.reset();
        const std::int64_t at = nowUs();
        postClick(target, mouse);
        const double latency = effect.waitSince(at, 3000);
        figures[name].add(latency);
        return latency >= 0;
    };
    auto endLoop = [&] {
        QMetaObject::invokeMethod(&window, [&] { session.Busy = false; }, Qt::QueuedConnection);
        while (polling)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    };

    QElapsedTimer wall;
    wall.start();
    const std::clock_t cpuStart = std::clock();
    heartbeat.start();
    std::thread user([&] {
        for (int i = 0; i < trials; ++i) {
            startLoop(0, "cmdStop", actions.RequestMode1);
            pause(400, 1600);
            if (!click(stopButton, stopped, "stop"))
                endLoop();
            while (polling)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        for (int i = 0; i < trials; ++i) {
            startLoop(6, "cmdStopLiveCombo", actions.RequestLiveCombo);
            pause(400, 1200);
            if (click(comboButton, shown, "open")) {
                // The list places itself once shown; the entry is aimed at where it is then, and
                // clicked a random moment later.
                pause(100, 300);
                QMetaObject::invokeMethod(&window, [&] { watch.aimAtEntry(); }, Qt::QueuedConnection);
                while (!entry.aimed())
                    std::this_thread::sleep_for(std::chrono::milliseconds(1));
                pause(50, 500);
                click(entry, hidden, "close");
            }
            pause(200, 800);
            if (!click(stopButton, stopped, "stop2"))
                endLoop();
            while (polling)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        // exit(), not quit(): quit() asks the window to close, which it refuses while connected.
        QMetaObject::invokeMethod(&application, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
    });
    application.exec();
    user.join();

    const double cpu = double(std::clock() - cpuStart) / CLOCKS_PER_SEC;
    const double elapsed = double(wall.elapsed()) / 1000.0;
    for (const char* name : {"stop", "open", "close", "stop2"})
        print(name, figures[name]);
    std::printf("%.1f s: longest time without events %.0f ms, CPU %.1f %% of one core\n", elapsed,
                double(longestGap) / 1000.0, 100.0 * cpu / elapsed);
    actions.Disconnect();
    return 0;
}
