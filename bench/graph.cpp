// The graph's figures: samples taken per second, the longest event-loop gap while eight items
// update at the live rate, how long a 100,000-frame log takes to draw at once, and the memory
// eight items hold after 30 minutes of polling.
#include "log/LogFile.h"
#include "log/LogGraph.h"
#include "log/ReplayFrames.h"
#include "session/GraphModel.h"
#include "ui/GraphChart.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>
#include <fstream>
#include <string>

namespace {

using kvx::GraphModel;

const char* const kIds[] = {"04", "05", "0B", "0C", "0D", "0E", "0F", "11"};
// A K-line unit answers an item at most about 20 times a second.
constexpr int kLiveRate = 20;

long residentKb()
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("VmRSS:", 0) == 0)
            return std::stol(line.substr(6));
    return 0;
}

void fill(GraphModel& graph, double seconds)
{
    const int samples = static_cast<int>(seconds * kLiveRate);
    for (int i = 0; i < samples; ++i)
        for (int k = 0; k < 8; ++k)
            graph.offer(kIds[k], kIds[k], true, std::to_string((i * (k + 3)) % 250) + " x", "1 y",
                        static_cast<double>(i) / kLiveRate);
}

// The longest gap between turns of the event loop while the graph runs for the given time: a
// zero timer measures the loop, a live-rate timer feeds eight items, the window's timer redraws.
double longestGapMs(GraphModel* graph, kvx::ui::GraphChart* chart, int runMs, double startTime)
{
    QElapsedTimer clock;
    clock.start();
    qint64 last = clock.nsecsElapsed(), longest = 0;
    QTimer probe, feed, redraw;
    QObject::connect(&probe, &QTimer::timeout, [&] {
        const qint64 now = clock.nsecsElapsed();
        longest = std::max(longest, now - last);
        last = now;
    });
    double t = startTime;
    int i = 0;
    QObject::connect(&feed, &QTimer::timeout, [&] {
        t += 1.0 / kLiveRate;
        ++i;
        for (int k = 0; k < 8; ++k)
            graph->offer(kIds[k], kIds[k], true, std::to_string((i * (k + 3)) % 250) + " x", "1 y", t);
    });
    QObject::connect(&redraw, &QTimer::timeout, [&] { chart->redraw(); });
    probe.start(0);
    if (graph) {
        feed.start(1000 / kLiveRate);
        redraw.start(250);
    }
    QTimer::singleShot(runMs, [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    return static_cast<double>(longest) / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);

    {
        GraphModel graph;
        QElapsedTimer t;
        t.start();
        fill(graph, 600);
        const double seconds = static_cast<double>(t.nsecsElapsed()) / 1e9;
        std::printf("samples taken: %.0f per second (8 items, %zu samples)\n", 600.0 * kLiveRate * 8 / seconds,
                    graph.pointCount());
    }

    {
        const long before = residentKb();
        GraphModel graph;
        fill(graph, 30 * 60);
        std::printf("after 30 simulated minutes of 8 items at %d/s: %zu samples, %zu bytes of samples, "
                    "resident memory +%ld kB\n",
                    kLiveRate, graph.pointCount(), graph.pointCount() * sizeof(kvx::GraphPoint), residentKb() - before);
        fill(graph, 120 * 60);
        std::printf("after 2 simulated hours: %zu samples (bounded), resident memory +%ld kB\n", graph.pointCount(),
                    residentKb() - before);
    }

    {
        const double idle = longestGapMs(nullptr, nullptr, 3000, 0);
        GraphModel graph;
        kvx::ui::GraphChart chart(graph);
        chart.resize(900, 500);
        chart.show();
        fill(graph, 30 * 60);
        // The window stands and has drawn once before the run is measured.
        chart.redraw();
        QApplication::processEvents();
        const double following = longestGapMs(&graph, &chart, 5000, 30 * 60);
        chart.showAll();
        const double wholeRun = longestGapMs(&graph, &chart, 5000, 30 * 60 + 5);
        std::printf("longest event-loop gap: %.2f ms idle, %.2f ms with 8 items at %d/s (last minute shown), "
                    "%.2f ms showing all 30 minutes\n",
                    idle, following, kLiveRate, wholeRun);
    }

    {
        QTemporaryDir dir;
        const std::string path = dir.filePath("big.log").toStdString();
        {
            kvx::log::LogFile file(path, kvx::log::LogFile::Mode::Create);
            file.writeRecord(98, "9");
            file.writeRecord(100, "KORVENATRONIX OBDII LOG");
            file.writeRecord(102, "01/17/2009");
            const char* frames[] = {"486B104104%02X", "486B104105%02X", "486B10410C%02X%02X", "486B10410D%02X"};
            for (long k = 0; k < 100000; ++k) {
                char text[40];
                std::snprintf(text, sizeof text, frames[k % 4], static_cast<int>(k % 200), static_cast<int>(k % 97));
                file.writeFrameRecord(150 + k, std::string(text) + "00", k * 60);
            }
            file.writeRecord(99, "100000");
        }
        GraphModel graph;
        kvx::ui::GraphChart chart(graph);
        chart.resize(900, 500);
        chart.show();
        QElapsedTimer t;
        t.start();
        kvx::log::LoadLogIntoGraph(path, kvx::log::StandardLiveDecoding(), graph);
        const double loaded = static_cast<double>(t.nsecsElapsed()) / 1e6;
        chart.showAll();
        const QImage picture = chart.grab().toImage();
        const double drawn = static_cast<double>(t.nsecsElapsed()) / 1e6;
        std::printf("100,000-frame log drawn at once: %.0f ms (read and decoded %.0f ms, drawn %.0f ms), %zu samples\n",
                    drawn, loaded, drawn - loaded, graph.pointCount());
    }
    return 0;
}
