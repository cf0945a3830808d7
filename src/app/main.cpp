#include "app/SessionActions.h"
#include "app/StartUp.h"
#include "app/frmAbout.h"
#include "app/frmMain.h"
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
#include "ui/QtShell.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QTimer>

using namespace kvx;

namespace {

void save(QWidget& w, const QString& folder, const char* name)
{
    w.grab().save(QDir(folder).filePath(QString::fromLatin1(name) + QStringLiteral(".png")));
}

// Writes a picture of every window into the folder: the dialogs first, then the main window
// connected with live data running for a few seconds; the program then disconnects and quits.
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
            enhanced::frmSelection selection(session.screen, actions.ConnectModule, {true, false, false, false},
                                             &window);
            selection.show();
            save(selection, folder, "frmSelection");
        }
        if (!actions.ConnectModule(ModuleGeneric)) {
            save(window, folder, "frmMain");
            QApplication::exit(1);
            return;
        }
        QTimer::singleShot(4000, &window, [&window, &session, actions, folder] {
            save(window, folder, "frmMain");
            actions.Stop();
            QTimer::singleShot(0, &window, [actions] {
                actions.Disconnect();
                QApplication::quit();
            });
        });
        actions.RequestMode1();
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
    parser.addOption(virtualVehicle);
    parser.addOption(screenshots);
    parser.process(application);

    // The window's session and link first; the rest of the load follows in StartSession, once
    // the window is there to own its message boxes.
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
    app::StartSession(session, parser.isSet(virtualVehicle), programFolder);
    settings::SettingsEditor editor(session);

    QObject::connect(&window, &app::frmMain::connectRequested, &window, [&] {
        enhanced::frmSelection selection(screen, actions.ConnectModule, {true, false, false, false}, &window);
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
    if (parser.isSet(screenshots))
        TakeScreenshots(window, session, editor, actions, parser.value(screenshots));
    return application.exec();
}
