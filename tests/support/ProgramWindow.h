#pragma once

#include "app/SessionActions.h"
#include "app/StartUp.h"
#include "app/VehicleChoice.h"
#include "app/frmGraph.h"
#include "app/frmMain.h"
#include "enhanced/frmSelection.h"
#include "garage/ProgramFolders.h"
#include "link/Clock.h"
#include "link/LinkSession.h"
#include "log/frmLogController.h"
#include "ports/WireFactory.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "support/RecordingShell.h"
#include "support/TempSettings.h"
#include "support/WidgetApp.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kvx::test {

// Settings the store holds when the program starts: key and text.
using StoredSettings = std::vector<std::pair<const char*, const char*>>;

// The program as main() assembles it, over the virtual vehicle on virtual time: its own start-up
// and actions, the real frmMain with the player window, a settings store of its own (empty unless
// given) and a program folder of its own (with a Log folder and the given description file, if
// any). The car is the one the settings name, as in the program, unless the test gives its own.
struct ProgramWindow {
    QApplication& application = widgetApp();
    TempSettings store;
    QTemporaryDir folder;
    link::VirtualClock clock;
    link::LinkSession link;
    MainScreen screen;
    RecordingShell shell;
    Session session{link, screen, shell};
    app::MainActions actions;
    std::unique_ptr<app::frmMain> window;

    explicit ProgramWindow(const char* descriptions = nullptr, const StoredSettings& stored = {},
                           std::optional<sim::VehicleConfig> vehicle = std::nullopt)
        : link(ports::makeWireFactory(clock, portOptions(std::move(vehicle))), clock)
    {
        for (const auto& [key, text] : stored)
            store.put(key, text);
        QDir(folder.path()).mkdir("Log");
        if (descriptions) {
            QFile file(QDir(folder.path()).filePath("SAE OBD II CODES.dat"));
            file.open(QIODevice::WriteOnly);
            file.write(descriptions);
        }
        actions = app::BindSessionActions(session, garage::foldersBeside(folder.path()));
        window = std::make_unique<app::frmMain>(screen, actions);
        window->setLogControllerFactory(
            [this](QWidget* parent) { return new log::frmLogController(session, parent); });
        window->setGraphFactory([this](QWidget* parent) { return new app::frmGraph(session, parent); });
        app::StartSession(session, true, programFolder());
        window->show();
    }

    ports::PortOptions portOptions(std::optional<sim::VehicleConfig> vehicle)
    {
        ports::PortOptions options;
        if (vehicle)
            options.vehicle = std::move(*vehicle);
        else
            options.chosenVehicle = [this] { return app::VehicleInForce(session.settings); };
        return options;
    }

    std::string programFolder() const { return folder.path().toStdString(); }
    QString logFolder() const { return QDir(folder.path()).filePath("Log"); }

    void toolbar(const char* key) { window->findChild<QToolBar*>("Toolbar1")->findChild<QAction*>(key)->trigger(); }
    void exit() { toolbar("Exit"); }
    void showTab(int index) { window->findChild<QTabBar*>("TabStrip1")->setCurrentIndex(index); }
    template <typename W = QWidget>
    W* find(const char* name) const
    {
        return window->findChild<W*>(name);
    }
    void click(QPushButton* button) { QTest::mouseClick(button, Qt::LeftButton); }
    void click(const char* button) { click(find<QPushButton>(button)); }

    // Chooses a module in the selection window as the user does after pressing Connect; true
    // when it connected (the window then closes; it stays open after a failed try).
    bool chooseModule(enhanced::frmSelection& selection, int module)
    {
        selection.show();
        click(selection.findChildren<QPushButton*>("Command1").at(module));
        return selection.result() == QDialog::Accepted;
    }
    bool chooseModule(int module)
    {
        enhanced::frmSelection selection(screen, actions.ConnectModule, window.get());
        return chooseModule(selection, module);
    }

    // Lets a loop of the window run for this many event pumps, then presses its stop button.
    void runFor(const char* start, const char* stop, int pumps)
    {
        int n = 0;
        shell.onProcessEvents = [&] {
            if (++n == pumps)
                click(stop);
        };
        click(start);
        shell.onProcessEvents = nullptr;
    }
};

} // namespace kvx::test
