// The program as a user starts it on the virtual vehicle on the real clock, for the benchmarks that
// measure the window: a settings store of its own, so whatever this machine's user saved (a slow
// P3, another port) plays no part, and message boxes printed rather than shown, since a modal box
// would stop the measurement until someone closed it.
#pragma once

#include "app/SessionActions.h"
#include "app/StartUp.h"
#include "app/frmMain.h"
#include "garage/ProgramFolders.h"
#include "link/Clock.h"
#include "link/LinkSession.h"
#include "ports/WireFactory.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "ui/QtShell.h"

#include <QSettings>
#include <QTemporaryDir>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

namespace kvx::bench {

class PrintingShell : public ui::QtShell {
public:
    void messageBox(const std::string& title, const std::string& text, MessageIcon) override
    {
        std::fprintf(stderr, "%s: %s\n", title.c_str(), text.c_str());
    }
};

struct RunningProgram {
    // `adjust` may wrap the window's actions before the window binds them to its buttons.
    explicit RunningProgram(const std::function<void(app::MainActions&)>& adjust = {})
    {
        app::StartSession(session, true, folders.shipped.toStdString());
        actions = app::BindSessionActions(session, folders);
        if (adjust)
            adjust(actions);
        window = std::make_unique<app::frmMain>(screen, actions);
        shell.setParent(window.get());
        window->show();
    }

    // Connects to the engine unit with generic OBD, as the first click of a user does.
    bool connect()
    {
        if (actions.ConnectModule(ModuleGeneric))
            return true;
        std::fprintf(stderr, "could not connect to the virtual vehicle\n");
        return false;
    }

    QTemporaryDir store;
    bool storeInUse = useStore(store);
    link::SteadyClock clock;
    link::LinkSession link{ports::makeWireFactory(clock), clock};
    MainScreen screen;
    PrintingShell shell;
    Session session{link, screen, shell};
    garage::ProgramFolders folders = garage::runFolders();
    app::MainActions actions;
    std::unique_ptr<app::frmMain> window;

private:
    static bool useStore(const QTemporaryDir& dir)
    {
        QSettings::setDefaultFormat(QSettings::IniFormat);
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, dir.path());
        return true;
    }
};

} // namespace kvx::bench
