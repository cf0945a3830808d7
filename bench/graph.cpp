// The graph's figures: samples taken per second, the longest event-loop gap while eight items
// update at the live rate, how long a 100,000-frame log takes to draw at once, and the memory
// eight items hold after 30 minutes of polling.
//
// Usage: bench_graph [rounds of the live comparison, default 5] [seconds per run, default 6]
//
// The live comparison is bench_ui_latency's measure of the same program: the main window polls
// the virtual vehicle's live data on the real clock while a 5 ms heartbeat notes the longest
// stretch without events; each round runs once without the graph window and once with it open,
// plotting eight items, so the difference is what the graph adds.
#include "RunningProgram.h"
#include "app/frmGraph.h"
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
#include <algorithm>
#include <malloc.h>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

using kvx::GraphModel;

const char* const kIds[] = {"04", "05", "0B", "0C", "0D", "0E", "0F", "11"};
// A K-line unit answers an item at most about 20 times a second.
constexpr int kLiveRate = 20;

// Bytes the program holds on its heap (allocated and not freed).
std::size_t heapBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

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

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

// Live data on the virtual vehicle, real clock, with and without the graph: see the top.
void liveComparison(int rounds, int seconds)
{
    using namespace kvx;
    bench::RunningProgram program;
    if (!program.connect())
        return;
    app::frmMain& window = *program.window;
    Session& session = program.session;
    app::MainActions& actions = program.actions;
    MainScreen& screen = program.screen;
    screen.TabStrip1.select(0);

    QElapsedTimer clockNs;
    clockNs.start();
    qint64 lastBeat = 0, longest = 0;
    QTimer heartbeat;
    heartbeat.setTimerType(Qt::PreciseTimer);
    heartbeat.setInterval(5);
    QObject::connect(&heartbeat, &QTimer::timeout, [&] {
        const qint64 t = clockNs.nsecsElapsed();
        if (lastBeat > 0)
            longest = std::max(longest, t - lastBeat);
        lastBeat = t;
    });
    heartbeat.start();
    // One run: live data for the given time; the longest gap and the samples the graph took.
    auto run = [&](app::frmGraph* graph) {
        lastBeat = 0;
        longest = 0;
        const std::size_t before = graph ? graph->model().pointCount() : 0;
        QTimer::singleShot(seconds * 1000, &window, [&] { actions.Stop(); });
        actions.RequestMode1();
        return std::make_pair(static_cast<double>(longest) / 1e6,
                              graph ? graph->model().pointCount() - before : std::size_t{0});
    };

    // The eight items: the first eight numeric rows of the grid, picked as the user does.
    std::vector<std::string> eight;
    {
        app::frmGraph probe(session);
        probe.model().setPlotted({});
        run(&probe);
        for (const GraphModel::Item& item : probe.model().items())
            if (item.numeric && eight.size() < GraphModel::kMaxSeries)
                eight.push_back(item.id);
    }
    std::vector<double> without, with, added;
    double rate = 0;
    for (int r = 0; r < rounds; ++r) {
        const double alone = run(nullptr).first;
        auto* graph = new app::frmGraph(session, &window);
        graph->setAttribute(Qt::WA_DeleteOnClose);
        graph->show();
        graph->model().setPlotted(eight);
        const auto [gap, samples] = run(graph);
        graph->close();
        QApplication::processEvents();
        rate = static_cast<double>(samples) / seconds;
        without.push_back(alone);
        with.push_back(gap);
        added.push_back(gap - alone);
        std::printf("live round %d: longest gap %.2f ms without the graph, %.2f ms with %zu items plotted (%.1f samples/s)\n",
                    r + 1, alone, gap, eight.size(), rate);
    }
    std::printf("live data, real clock, %d rounds of %d s: longest gap median %.2f ms without the graph, %.2f ms "
                "with it (ratio %.2f); added, median %.2f ms, worst %.2f ms\n",
                rounds, seconds, median(without), median(with), median(with) / std::max(median(without), 1e-9),
                median(added), *std::max_element(added.begin(), added.end()));
    actions.Disconnect();
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    QApplication app(argc, argv);
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    const int seconds = argc > 2 ? std::max(1, std::atoi(argv[2])) : 6;
    if (rounds > 0 && !qEnvironmentVariableIsSet("KVX_BENCH_NO_LIVE"))
        liveComparison(rounds, seconds);

    {
        GraphModel graph;
        graph.setPlotted({kIds, kIds + 8});
        QElapsedTimer t;
        t.start();
        fill(graph, 600);
        const double seconds = static_cast<double>(t.nsecsElapsed()) / 1e9;
        std::printf("samples taken: %.0f per second (8 items, %zu samples)\n", 600.0 * kLiveRate * 8 / seconds,
                    graph.pointCount());
    }

    {
        const long before = residentKb();
        const std::size_t heap = heapBytes();
        GraphModel graph;
        graph.setPlotted({kIds, kIds + 8});
        fill(graph, 30 * 60);
        std::printf("after 30 simulated minutes of 8 items at %d/s: %zu samples held in %.1f MB of heap "
                    "(resident +%ld kB)\n",
                    kLiveRate, graph.pointCount(), static_cast<double>(heapBytes() - heap) / 1e6, residentKb() - before);
        fill(graph, 120 * 60);
        std::printf("after 2 simulated hours: %zu samples (bounded) in %.1f MB of heap (resident +%ld kB)\n",
                    graph.pointCount(), static_cast<double>(heapBytes() - heap) / 1e6, residentKb() - before);
    }
    {
        // The most it holds: eight items fed far faster than a unit answers (200 a second each
        // for 40 minutes), so the capacity and the thinning both act.
        const std::size_t heap = heapBytes();
        GraphModel fast;
        fast.setPlotted({kIds, kIds + 8});
        for (int i = 0; i < 40 * 60 * 200; ++i)
            for (int k = 0; k < 8; ++k)
                fast.offer(kIds[k], kIds[k], true, std::to_string(i % 97) + " x", "1 y", i * 0.005);
        std::printf("8 items at 200/s for 40 simulated minutes: %zu samples over the last %.0f s, %.1f MB of heap\n",
                    fast.pointCount(), fast.lastTime() - fast.firstTime(),
                    static_cast<double>(heapBytes() - heap) / 1e6);
    }

    {
        const double idle = longestGapMs(nullptr, nullptr, 3000, 0);
        GraphModel graph;
        graph.setPlotted({kIds, kIds + 8});
        kvx::ui::GraphChart chart(graph);
        chart.resize(900, 500);
        chart.show();
        fill(graph, 30 * 60);
        // The window stands and has drawn once before the run is measured.
        chart.redraw();
        QApplication::processEvents();
        // One turn of the window's redraw timer, taken apart: the lines and scales made from the
        // samples, then the chart painted (as the window system asks after it).
        std::vector<double> lines, paints;
        for (int i = 0; i < 20; ++i) {
            for (int k = 0; k < 8; ++k)
                graph.offer(kIds[k], kIds[k], true, std::to_string((i * (k + 3)) % 250) + " x", "1 y",
                            30 * 60 + i * 0.05);
            QElapsedTimer t;
            t.start();
            chart.redraw();
            lines.push_back(static_cast<double>(t.nsecsElapsed()) / 1e6);
            t.restart();
            chart.repaint();
            paints.push_back(static_cast<double>(t.nsecsElapsed()) / 1e6);
        }
        std::printf("one redraw of 8 items, last minute of 30 shown: lines %.2f ms, paint %.2f ms (medians of 20)\n",
                    median(lines), median(paints));
        const double following = longestGapMs(&graph, &chart, 5000, 30 * 60 + 1);
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
