#include "app/SessionActions.h"
#include "app/StartUp.h"

#include "enhanced/Modules.h"
#include "enhanced/NissanKeepAlive.h"
#include "link/LinkSession.h"
#include "log/Recorder.h"
#include "obd/CommandGuard.h"
#include "obd/Connection.h"
#include "obd/Disconnect.h"
#include "obd/FreezeFrame.h"
#include "obd/InfoPids.h"
#include "obd/KeepAlive.h"
#include "obd/LiveCombo.h"
#include "obd/LiveData.h"
#include "obd/MonitorTests.h"
#include "obd/O2SensorTests.h"
#include "obd/Readings.h"
#include "obd/TroubleCodes.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "settings/SettingsStore.h"

#include <QCoreApplication>
#include <QDateTime>
#include <memory>
#include <utility>

namespace kvx::app {

namespace {

// The main window's close check. Refuses (false, with the reason in the status bar) while a log
// plays or a unit is connected; otherwise finishes the log file and saves the P3 delay.
bool mayClose(Session& session)
{
    if (session.Replaying) {
        session.screen.StatusBar1.setText(1, "STOP PLAYING LOG");
        return false;
    }
    if (!session.LinkDown) {
        session.screen.StatusBar1.setText(1, "DISCONNECT TO EXIT");
        return false;
    }
    log::CloseLogOnExit(session);
    settings::SaveP3Delay(session.settings);
    return true;
}

// Marks a command as running for as long as it lasts, however it ends.
class Running {
public:
    explicit Running(bool& flag) : flag_(flag) { flag_ = true; }
    ~Running() { flag_ = false; }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

private:
    bool& flag_;
};

// While a loop polls, a click on its START or on GO could only be dropped; the two are shown
// off for as long, and back on afterwards while the session stands.
class LoopControls {
public:
    LoopControls(MainScreen& screen, const Session& session, const char* start)
        : start_(screen.control(start)), go_(screen.control("cmdGo")), session_(session)
    {
        start_.setEnabled(false);
        go_.setEnabled(false);
    }
    ~LoopControls()
    {
        start_.setEnabled(!session_.LinkDown);
        go_.setEnabled(true);
    }
    LoopControls(const LoopControls&) = delete;
    LoopControls& operator=(const LoopControls&) = delete;

private:
    ControlState& start_;
    ControlState& go_;
    const Session& session_;
};

} // namespace

MainActions BindSessionActions(Session& s, const garage::ProgramFolders& folders)
{
    // One command at a time: a click that arrives while another command lets events run (a
    // double click, a button on another tab) is dropped rather than run inside it, where its
    // requests would fall between the first command's and its text would mix with the first's.
    // A Disconnect asked for meanwhile ends the command's loop and runs when the command has
    // ended, so no reply still on its way is shown after the screen was cleared.
    auto running = std::make_shared<bool>(false);
    auto disconnectAfter = std::make_shared<bool>(false);
    auto disconnect = [&s] {
        obd::RunCommand(s, [&] {
            obd::Disconnect(s);
            ShowPortInForce(s);
        });
    };
    auto guarded = [&s, running, disconnectAfter, disconnect](std::function<void()> f) {
        return [&s, running, disconnectAfter, disconnect, f = std::move(f)] {
            if (*running)
                return;
            {
                const Running mark(*running);
                obd::RunCommand(s, f);
            }
            if (std::exchange(*disconnectAfter, false))
                disconnect();
        };
    };
    // Every other control reports its faults the same way.
    auto reported = [&s](std::function<void()> f) { return [&s, f = std::move(f)] { obd::RunCommand(s, f); }; };
    // The link calls back during its long waits (P3, wake-up), never inside a request, so the
    // window repaints and its timers run. While a loop polls, clicks are taken there too, so STOP
    // or a combo list answers within a wait slice rather than after a whole request; during a
    // one-off command they wait for its end, when the command they start can run. A keep-alive
    // tick that falls into such a wait is skipped, as the link is in the middle of a request.
    auto waiting = std::make_shared<bool>(false);
    s.link.setIdleHook([&s, waiting] {
        *waiting = true;
        QCoreApplication::processEvents(s.Busy ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
        *waiting = false;
    });

    MainActions a;
    a.IsPortOpen = [&s] { return s.link.IsPortOpen(); };
    a.PrepareConnect = [&s] {
        s.screen.tmrKeepAlive.setEnabled(false);
        s.screen.tmrKeepAliveEnhance.setEnabled(false);
        s.SilenceCount = 0;
    };
    a.ConnectModule = [&s](int module) {
        bool connected = false;
        obd::RunCommand(s, [&] {
            // Nothing of an earlier unit or module may pass for a reading of this one.
            obd::ClearReadings(s);
            ShowPortInForce(s);
            connected = enhanced::ConnectModule(s, module);
        });
        return connected;
    };
    a.Disconnect = [&s, running, disconnectAfter, disconnect] {
        if (*running) {
            s.Busy = false;
            *disconnectAfter = true;
            return;
        }
        disconnect();
    };
    // A session runs on the port it was opened with; a change in the dialog counts from the next.
    a.SettingsClosed = [&s] {
        if (s.LinkDown)
            ShowPortInForce(s);
    };
    a.Go = guarded([&s] {
        s.screen.StatusBar1.setText(1, "STOP QUERYING");
        s.SilenceCount = 0;
        obd::RediscoverSupportedPids(s);
    });
    a.RequestMode1 = guarded([&s] {
        const LoopControls controls(s.screen, s, "cmdRequestMode1");
        enhanced::StartModuleLiveData(s);
    });
    a.Stop = reported([&s] { obd::StopLiveData(s); });
    a.GridMode1Click = [&s](int row, int) { obd::RunCommand(s, [&] { obd::ToggleLiveDataRow(s, row); }); };
    a.GridMode1HeaderClick = reported([&s] { obd::ToggleAllLiveDataRows(s); });
    a.TickAllRows = [&s](bool ticked) { obd::RunCommand(s, [&] { obd::TickAllLiveDataRows(s, ticked); }); };
    a.KeepAliveTick = guarded([&s, waiting] {
        if (!*waiting)
            obd::KeepAliveTick(s);
    });
    a.KeepAliveEnhanceTick = guarded([&s, waiting] {
        if (!*waiting)
            enhanced::NissanKeepAliveTick(s);
    });
    a.ModeOnce = [&s, guarded](int index) { guarded([&s, index] { obd::ClickModeOnce(s, index); })(); };
    a.ReadVin = guarded([&s] { obd::ReadVehicleId(s); });
    a.RequestLiveCombo = guarded([&s] {
        const LoopControls controls(s.screen, s, "cmdRequestLiveCombo");
        enhanced::StartModuleLiveCombo(s);
    });
    a.StopLiveCombo = reported([&s] { obd::StopLiveCombo(s); });
    a.RequestMode2 = guarded([&s] { obd::RequestFreezeFrame(s); });
    a.Mode3 = guarded([&s] { obd::RequestStoredCodes(s); });
    a.Mode7 = guarded([&s] { obd::RequestPendingCodes(s); });
    a.Mode4 = guarded([&s] { obd::RequestClearCodes(s); });
    a.RequestMode5 = guarded([&s] { obd::RequestO2SensorTests(s); });
    a.RequestMode6 = guarded([&s] { obd::RequestMonitorTests(s); });
    // A failed start has told the user why; the box stays ticked as they left it. Without a
    // session there is nothing to record, and no empty file is made.
    a.LogToggled = [&s, folders](bool on) {
        if (on && s.LinkDown) {
            s.screen.control("chkLog").setChecked(false);
            return;
        }
        obd::RunCommand(s, [&] {
            s.screen.control("chkLog").setChecked(on);
            if (on)
                log::StartLogging(s, folders, QDateTime::currentDateTime());
            else
                log::StopLogging(s);
        });
    };
    a.SliderMoved = [&s](int value) { obd::RunCommand(s, [&] { settings::SetP3FromSlider(s, value); }); };
    // A close check that faults keeps the window open, with the fault on screen.
    a.QueryClose = [&s] {
        bool closing = false;
        obd::RunCommand(s, [&] { closing = mayClose(s); });
        return closing;
    };
    return a;
}

} // namespace kvx::app
