#include "app/ScreenshotTour.h"
#include "app/SessionActions.h"
#include "app/StartUp.h"
#include "app/VehicleChoice.h"
#include "app/frmAbout.h"
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
#include "settings/SettingsEditor.h"
#include "settings/SettingsStore.h"
#include "settings/frmSetting.h"
#include "ui/DarkPalette.h"
#include "ui/QtShell.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QTimer>

using namespace kvx;

int main(int argc, char** argv)
{
    // The resources are linked in from the windows' static library, which does not register them.
    Q_INIT_RESOURCE(korvenatronix);
    QApplication application(argc, argv);
    QApplication::setApplicationName(QString::fromLatin1(settings::kStoreName));
    QApplication::setOrganizationName(QString::fromLatin1(settings::kStoreName));
    QApplication::setApplicationVersion(QStringLiteral(KVX_VERSION));
    // The window shows the menu entry's icon, and desktops match it to that entry.
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/korvenatronix-256.png")));
    QGuiApplication::setDesktopFileName(QStringLiteral("korvenatronix"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("K-line vehicle diagnostics"));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption virtualVehicle(
        QStringLiteral("virtual-vehicle"),
        QStringLiteral("Use the virtual vehicle as the port for this run, with the car named (a car of the garage "
                       "or a profile file; the built-in car when none follows)."),
        QStringLiteral("NAME|FILE"));
    QCommandLineOption screenshots(QStringLiteral("screenshots"), {}, QStringLiteral("folder"));
    screenshots.setFlags(QCommandLineOption::HiddenFromHelp);
    // The screenshots are taken with a dark theme too, to see that every window stays readable.
    QCommandLineOption dark(QStringLiteral("dark-palette"));
    dark.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOption(virtualVehicle);
    parser.addOption(screenshots);
    parser.addOption(dark);
    parser.process(app::WithVirtualVehicleValue(QApplication::arguments()));
    if (parser.isSet(dark))
        QApplication::setPalette(ui::DarkPalette());

    // The window's session and link first; the rest of the load follows in StartSession.
    const garage::ProgramFolders folders = garage::runFolders();
    link::SteadyClock clock;
    // The car on the virtual vehicle port is the one the settings name at each connection.
    const Session* running = nullptr;
    ports::PortOptions portOptions;
    portOptions.chosenVehicle = [&running] { return app::VehicleInForce(running->settings); };
    link::LinkSession link(ports::makeWireFactory(clock, portOptions), clock);
    MainScreen screen;
    ui::QtShell shell;
    Session session(link, screen, shell);
    running = &session;
    app::MainActions actions = app::BindSessionActions(session, folders);
    app::frmMain window(screen, actions);
    shell.setParent(&window);
    window.setLogControllerFactory([&session](QWidget* parent) { return new log::frmLogController(session, parent); });
    window.setGraphFactory([&session](QWidget* parent) { return new app::frmGraph(session, parent); });
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
    QTimer::singleShot(0, &window, [&] {
        app::StartSession(session, parser.isSet(virtualVehicle), folders.shipped.toStdString(),
                          parser.value(virtualVehicle).toStdString());
        if (parser.isSet(screenshots))
            app::TakeScreenshots(window, session, editor, actions, parser.value(screenshots));
    });
    return application.exec();
}
