#include "app/ScreenshotTour.h"

#include "app/frmAbout.h"
#include "app/frmGraph.h"
#include "app/frmMain.h"
#include "data/GridLayouts.h"
#include "data/VehicleLists.h"
#include "enhanced/frmSelection.h"
#include "log/frmLogController.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "settings/frmSetting.h"

#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QTimer>
#include <cstdio>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace kvx::app {

namespace {

void save(QWidget& w, const QString& folder, const char* name)
{
    w.grab().save(QDir(folder).filePath(QString::fromLatin1(name) + QStringLiteral(".png")));
}

// A pass of every row takes seconds on the virtual vehicle; one that has not finished in this
// time never will.
constexpr int kLongestWaitMs = 120000;
// Long enough for a graph of a few rows to show their course.
constexpr int kGraphRunMs = 25000;

// Runs a polling service until it has written a value into every place the picture should show
// one (the ticked rows of a grid, the chosen slots of the combo) since it started. The picture is
// taken at the next turn of the event loop, when the last value is on screen, and the service is
// stopped then. A service that ends by itself or outlasts the longest wait still gets its
// picture, but the run says on stderr which picture lacks values and reports it failed.
class PollUntilWritten {
public:
    explicit PollUntilWritten(std::function<std::vector<int>()> expected) : expected_(std::move(expected)) {}

    // Whether every expected place had its value when the picture was taken.
    bool run(const char* name, const std::function<void()>& start, const std::function<void()>& stop,
             const std::function<void()>& picture)
    {
        // The pending picture belongs to this run: it dies with the guard if the run ends first.
        QObject guard;
        written_.clear();
        taken_ = false;
        complete_ = false;
        whenReady_ = [&] {
            taken_ = true;
            QTimer::singleShot(0, &guard, [&] {
                picture();
                stop();
            });
        };
        QTimer::singleShot(kLongestWaitMs, &guard, [&] {
            if (taken_)
                return;
            std::fprintf(stderr, "%s: no value in every place after %d s; the picture shows what there is\n", name,
                         kLongestWaitMs / 1000);
            taken_ = true;
            picture();
            stop();
        });
        // With nothing to wait for the picture is due at once.
        if (expected_().empty()) {
            complete_ = true;
            whenReady_();
        }
        start();
        whenReady_ = nullptr;
        if (!taken_) {
            std::fprintf(stderr, "%s: the service ended before every place had a value\n", name);
            picture();
        }
        return complete_;
    }

    // The service wrote a value into the place.
    void written(int place)
    {
        if (!whenReady_ || taken_)
            return;
        written_.insert(place);
        for (int expected : expected_())
            if (written_.count(expected) == 0)
                return;
        complete_ = true;
        whenReady_();
    }

private:
    std::function<std::vector<int>()> expected_;
    std::set<int> written_;
    bool taken_ = false;
    bool complete_ = false;
    std::function<void()> whenReady_;
};

// A message box the window raises during the tour (a refusal, the fault report of a code the
// description file cannot hold) waits for a click that never comes offscreen: its picture is taken
// under the name of the step that raised it, its text goes to stderr, and it is answered.
class BoxAnswerer {
public:
    explicit BoxAnswerer(QString folder) : folder_(std::move(folder))
    {
        QObject::connect(&timer_, &QTimer::timeout, [this] { answer(); });
        timer_.start(50);
    }

    void at(const char* step)
    {
        step_ = step;
        boxes_ = 0;
    }

private:
    void answer()
    {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box)
            return;
        const std::string name = step_ + "-box" + (boxes_++ ? std::to_string(boxes_) : std::string());
        save(*box, folder_, name.c_str());
        std::fprintf(stderr, "%s: the window said \"%s: %s\"\n", step_.c_str(), qPrintable(box->windowTitle()),
                     qPrintable(box->text()));
        box->accept();
    }

    QString folder_;
    QTimer timer_;
    std::string step_;
    int boxes_ = 0;
};

} // namespace

void TakeScreenshots(frmMain& window, Session& session, settings::SettingsEditor& editor, const MainActions& actions,
                     const QString& folder)
{
    QDir().mkpath(folder);
    {
        frmAbout about(&window);
        about.show();
        save(about, folder, "frmAbout");
    }
    {
        settings::frmSetting dialog(editor, &window);
        dialog.show();
        save(dialog, folder, "frmSetting");
    }
    {
        enhanced::frmSelection selection(session.screen, actions.ConnectModule, &window);
        selection.show();
        save(selection, folder, "frmSelection");
    }
    BoxAnswerer answerer(folder);
    auto shot = [&window, folder](const char* name) { save(window, folder, name); };
    // Modules are chosen as a user chooses them, so each gets its own tab set.
    auto choose = [&](int module) {
        enhanced::frmSelection selection(session.screen, actions.ConnectModule, &window);
        selection.Command1_Click(module);
        return selection.result() == QDialog::Accepted;
    };
    if (!choose(ModuleGeneric)) {
        std::fprintf(stderr, "frmMain: the unit did not answer the generic connection\n");
        shot("frmMain");
        QApplication::exit(1);
        return;
    }
    MainScreen& screen = session.screen;
    PollUntilWritten livePass([&screen] {
        std::vector<int> rows;
        for (int row = 1; row < screen.GridMode1.rows(); ++row)
            if (screen.GridMode1.text(row, data::MarkerColumn) != data::kEmptyMarker)
                rows.push_back(row);
        return rows;
    });
    PollUntilWritten comboPass([&screen] {
        std::vector<int> chosen;
        for (std::size_t slot = 0; slot < screen.cmbPid.size(); ++slot)
            if (screen.cmbPid[slot].text() != "OFF")
                chosen.push_back(static_cast<int>(slot));
        return chosen;
    });
    // The watches end with the tour.
    QObject watching;
    QObject::connect(&screen.GridMode1, &GridModel::cellChanged, &watching, [&livePass](int row, int col) {
        if (col == data::ValueColumn)
            livePass.written(row);
    });
    for (std::size_t slot = 0; slot < screen.lblPid.size(); ++slot)
        QObject::connect(&screen.lblPid[slot], &TextModel::changed, &watching,
                         [&comboPass, slot] { comboPass.written(static_cast<int>(slot)); });

    bool complete = true;
    answerer.at("frmMain");
    actions.LogToggled(true);
    complete &= livePass.run("frmMain", actions.RequestMode1, actions.Stop, [&] { shot("frmMain"); });
    actions.LogToggled(false);
    const std::string recording = session.LogPath;

    screen.TabStrip1.select(1);
    answerer.at("frmMain-FreezeFrame");
    actions.RequestMode2();
    shot("frmMain-FreezeFrame");
    screen.TabStrip1.select(2);
    answerer.at("frmMain-TroubleCodes");
    actions.Mode3();
    shot("frmMain-TroubleCodes");
    screen.TabStrip1.select(3);
    answerer.at("frmMain-O2SensorTest");
    actions.RequestMode5();
    shot("frmMain-O2SensorTest");
    screen.TabStrip1.select(4);
    screen.cmbYear.setCurrentIndex(1);
    data::FillMakeList(screen);
    screen.cmbMake.setCurrentIndex(0);
    answerer.at("frmMain-MonitoringTest");
    actions.RequestMode6();
    shot("frmMain-MonitoringTest");
    screen.TabStrip1.select(5);
    answerer.at("frmMain-Info");
    actions.ModeOnce(1);
    shot("frmMain-Info");
    screen.TabStrip1.select(6);
    for (std::size_t slot = 0; slot < screen.cmbPid.size(); ++slot)
        screen.cmbPid[slot].setCurrentIndex(int(slot) + 1);
    answerer.at("frmMain-LiveDataCombo");
    complete &= comboPass.run("frmMain-LiveDataCombo", actions.RequestLiveCombo, actions.StopLiveCombo,
                              [&] { shot("frmMain-LiveDataCombo"); });

    // The graph of a few rows polled for a while, recorded for the replay's graph below.
    screen.TabStrip1.select(0);
    actions.TickAllRows(false);
    for (int row = 1; row < screen.GridMode1.rows(); ++row)
        for (const char* pid : {"04", "05", "0C", "0D", "11"})
            if (screen.GridMode1.text(row, data::PidColumn) == pid)
                actions.GridMode1Click(row, data::MarkerColumn);
    window.toolbarClick(QStringLiteral("Graph"));
    auto* graph = qobject_cast<frmGraph*>(window.graph());
    std::string graphRecording;
    if (graph) {
        actions.LogToggled(true);
        QObject stopper;
        QTimer::singleShot(kGraphRunMs, &stopper, [&actions] { actions.Stop(); });
        actions.RequestMode1();
        actions.LogToggled(false);
        graphRecording = session.LogPath;
        graph->refresh();
        save(*graph, folder, "frmGraph-Live");
    }

    actions.Disconnect();

    // The manufacturer modules on the same car; the Nissan engine's live data is recorded.
    std::string nissanRecording;
    const std::pair<int, const char*> modules[] = {{ModuleNissanEcu, "frmMain-NissanEngine"},
                                                   {ModuleNissanTcu, "frmMain-NissanTransmission"},
                                                   {ModuleToyota, "frmMain-Toyota"}};
    for (const auto& [module, name] : modules) {
        answerer.at(name);
        const bool connected = choose(module);
        if (connected) {
            screen.TabStrip1.select(0);
            actions.LogToggled(module == ModuleNissanEcu);
            complete &= livePass.run(name, actions.RequestMode1, actions.Stop, [&, name = name] { shot(name); });
            actions.LogToggled(false);
            if (module == ModuleNissanEcu)
                nissanRecording = session.LogPath;
        } else {
            shot(name);
        }
        // A unit without the maker's items lists none; its combo would wait for answers that never come.
        if (connected && module == ModuleToyota && screen.GridMode1.rows() <= 1) {
            screen.TabStrip1.select(1);
            shot("frmMain-ToyotaCombo");
        } else if (connected && module == ModuleToyota) {
            screen.TabStrip1.select(1);
            for (std::size_t slot = 0; slot < screen.cmbPid.size(); ++slot)
                screen.cmbPid[slot].setCurrentIndex(int(slot) * 2 + 1);
            complete &= comboPass.run("frmMain-ToyotaCombo", actions.RequestLiveCombo, actions.StopLiveCombo,
                                      [&] { shot("frmMain-ToyotaCombo"); });
        }
        actions.Disconnect();
    }

    screen.TabStrip1.select(0);
    window.toolbarClick(QStringLiteral("Log Controller"));
    if (auto* player = qobject_cast<log::frmLogController*>(window.logController())) {
        player->setFileChooser([recording] { return QString::fromStdString(recording); });
        player->imgOpen_Click();
        save(*player, folder, "frmLogController");
        if (graph && !graphRecording.empty()) {
            // At no delay the graph shows the whole recording at once.
            player->setFileChooser([graphRecording] { return QString::fromStdString(graphRecording); });
            player->imgOpen_Click();
            player->controller().setSpeed(0);
            player->controller().play();
            save(*graph, folder, "frmGraph-Replay");
            graph->close();
        }
        if (!nissanRecording.empty()) {
            player->setFileChooser([nissanRecording] { return QString::fromStdString(nissanRecording); });
            player->imgOpen_Click();
            player->controller().setSpeed(0);
            player->controller().play();
            shot("frmMain-NissanReplay");
        }
        player->close();
    }
    QApplication::exit(complete ? 0 : 1);
}

} // namespace kvx::app
