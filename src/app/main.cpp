#include "app/SessionActions.h"
#include "app/StartUp.h"
#include "app/frmAbout.h"
#include "app/frmMain.h"
#include "data/VehicleLists.h"
#include "enhanced/frmSelection.h"
#include "link/Clock.h"
#include "link/LinkSession.h"
#include "log/frmLogController.h"
#include "ports/WireFactory.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "settings/SettingsEditor.h"
#include "settings/SettingsStore.h"
#include "settings/frmSetting.h"
#include "ui/DarkPalette.h"
#include "ui/QtShell.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QTimer>
#include <functional>

using namespace kvx;

namespace {

void save(QWidget& w, const QString& folder, const char* name)
{
    w.grab().save(QDir(folder).filePath(QString::fromLatin1(name) + QStringLiteral(".png")));
}

// Runs a polling service for the given time, takes a picture while it runs, then stops it.
void whilePolling(int ms, const std::function<void()>& start, const std::function<void()>& stop,
                  const std::function<void()>& picture)
{
    QTimer::singleShot(ms, [picture, stop] {
        picture();
        stop();
    });
    start();
}

// Writes a picture of every window into the folder: the dialogs first, then each tab of the main
// window after its service ran on the connected unit (live data recorded to a log on the way),
// then the player with that log open; the program then quits.
void TakeScreenshots(app::frmMain& window, Session& session, settings::SettingsEditor& editor,
                     const app::MainActions& actions, const QString& folder)
{
    QDir().mkpath(folder);
    QTimer::singleShot(500, &window, [&window, &session, &editor, actions, folder] {
        {
            app::frmAbout about(&window);
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
        auto shot = [&window, folder](const char* name) { save(window, folder, name); };
        // Modules are chosen as a user chooses them, so each gets its own tab set.
        auto choose = [&](int module) {
            enhanced::frmSelection selection(session.screen, actions.ConnectModule, &window);
            selection.Command1_Click(module);
            return selection.result() == QDialog::Accepted;
        };
        if (!choose(ModuleGeneric)) {
            shot("frmMain");
            QApplication::exit(1);
            return;
        }
        MainScreen& screen = session.screen;
        actions.LogToggled(true);
        whilePolling(8000, actions.RequestMode1, actions.Stop, [&] { shot("frmMain"); });
        actions.LogToggled(false);
        const std::string recording = session.LogPath;

        screen.TabStrip1.select(1);
        actions.RequestMode2();
        shot("frmMain-FreezeFrame");
        screen.TabStrip1.select(2);
        actions.Mode3();
        shot("frmMain-TroubleCodes");
        screen.TabStrip1.select(3);
        actions.RequestMode5();
        shot("frmMain-O2SensorTest");
        screen.TabStrip1.select(4);
        screen.cmbYear.setCurrentIndex(1);
        data::FillMakeList(screen);
        screen.cmbMake.setCurrentIndex(0);
        actions.RequestMode6();
        shot("frmMain-MonitoringTest");
        screen.TabStrip1.select(5);
        actions.ModeOnce(1);
        shot("frmMain-Info");
        screen.TabStrip1.select(6);
        for (std::size_t slot = 0; slot < screen.cmbPid.size(); ++slot)
            screen.cmbPid[slot].setCurrentIndex(int(slot) + 1);
        whilePolling(3000, actions.RequestLiveCombo, actions.StopLiveCombo, [&] { shot("frmMain-LiveDataCombo"); });

        actions.Disconnect();

        // The manufacturer modules on the same car; the Nissan engine's live data is recorded.
        std::string nissanRecording;
        const std::pair<int, const char*> modules[] = {{ModuleNissanEcu, "frmMain-NissanEngine"},
                                                       {ModuleNissanTcu, "frmMain-NissanTransmission"},
                                                       {ModuleToyota, "frmMain-Toyota"}};
        for (const auto& [module, name] : modules) {
            const bool connected = choose(module);
            if (connected) {
                screen.TabStrip1.select(0);
                actions.LogToggled(module == ModuleNissanEcu);
                whilePolling(9000, actions.RequestMode1, actions.Stop, [&, name = name] { shot(name); });
                actions.LogToggled(false);
                if (module == ModuleNissanEcu)
                    nissanRecording = session.LogPath;
            } else {
                shot(name);
            }
            if (connected && module == ModuleToyota) {
                screen.TabStrip1.select(1);
                for (std::size_t slot = 0; slot < screen.cmbPid.size(); ++slot)
                    screen.cmbPid[slot].setCurrentIndex(int(slot) * 2 + 1);
                whilePolling(3000, actions.RequestLiveCombo, actions.StopLiveCombo,
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
            if (!nissanRecording.empty()) {
                player->setFileChooser([nissanRecording] { return QString::fromStdString(nissanRecording); });
                player->imgOpen_Click();
                player->controller().setSpeed(0);
                player->controller().play();
                shot("frmMain-NissanReplay");
            }
            player->close();
        }
        QApplication::exit(0);
    });
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QString::fromLatin1(settings::kStoreName));
    QApplication::setOrganizationName(QString::fromLatin1(settings::kStoreName));
    QApplication::setApplicationVersion(QStringLiteral(KVX_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("K-line vehicle diagnostics"));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption virtualVehicle(QStringLiteral("virtual-vehicle"),
                                            QStringLiteral("Use the virtual vehicle as the port for this run."));
    QCommandLineOption screenshots(QStringLiteral("screenshots"), {}, QStringLiteral("folder"));
    screenshots.setFlags(QCommandLineOption::HiddenFromHelp);
    // The screenshots are taken with a dark theme too, to see that every window stays readable.
    QCommandLineOption dark(QStringLiteral("dark-palette"));
    dark.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOption(virtualVehicle);
    parser.addOption(screenshots);
    parser.addOption(dark);
    parser.process(application);
    if (parser.isSet(dark))
        QApplication::setPalette(ui::DarkPalette());

    // The window's session and link first; the rest of the load follows in StartSession.
    const std::string programFolder = QCoreApplication::applicationDirPath().toStdString();
    link::SteadyClock clock;
    link::LinkSession link(ports::makeWireFactory(clock), clock);
    MainScreen screen;
    ui::QtShell shell;
    Session session(link, screen, shell);
    app::MainActions actions = app::BindSessionActions(session, programFolder);
    app::frmMain window(screen, actions);
    shell.setParent(&window);
    window.setLogControllerFactory([&session](QWidget* parent) { return new log::frmLogController(session, parent); });
    settings::SettingsEditor editor(session);

    QObject::connect(&window, &app::frmMain::connectRequested, &window, [&] {
        enhanced::frmSelection selection(screen, actions.ConnectModule, &window);
        selection.exec();
    });
    QObject::connect(&window, &app::frmMain::settingRequested, &window, [&] {
        settings::frmSetting dialog(editor, &window);
        dialog.exec();
    });
    QObject::connect(&window, &app::frmMain::aboutRequested, &window, [&] {
        app::frmAbout about(&window);
        about.exec();
    });

    window.show();
    // The load runs once the window stands, so that a box it shows sits over the window and
    // does not hold the event loop up before it has started.
    QTimer::singleShot(0, &window, [&] { app::StartSession(session, parser.isSet(virtualVehicle), programFolder); });
    if (parser.isSet(screenshots))
        TakeScreenshots(window, session, editor, actions, parser.value(screenshots));
    return application.exec();
}
