#pragma once

#include <functional>

namespace kvx::app {

// What the main window asks of the session: each control calls one of these and renders the
// models afterwards. An empty function means the service is not available in this build, and
// its control stays disabled.
struct MainActions {
    std::function<bool()> IsPortOpen;

    // Runs the connection routine of a module of the selection window; true when connected.
    std::function<bool(int module)> ConnectModule;
    std::function<void()> Disconnect;
    // Before the selection window opens: keep-alive timers off, silence count zeroed.
    std::function<void()> PrepareConnect;
    // The settings dialog has closed (its port may have changed).
    std::function<void()> SettingsClosed;

    std::function<void()> Go;
    std::function<void()> RequestMode1;
    std::function<void()> Stop;
    std::function<void(int row, int col)> GridMode1Click;
    std::function<void()> GridMode1HeaderClick;
    std::function<void(bool ticked)> TickAllRows;
    std::function<void()> KeepAliveTick;
    std::function<void()> KeepAliveEnhanceTick;

    std::function<void(int index)> ModeOnce;
    std::function<void()> ReadVin;
    std::function<void()> RequestLiveCombo;
    std::function<void()> StopLiveCombo;
    std::function<void()> RequestMode2;
    std::function<void()> Mode3;
    std::function<void()> Mode4;
    std::function<void()> Mode7;
    std::function<void()> RequestMode5;
    std::function<void()> RequestMode6;
    // The user ticked or unticked chkLog: recording starts or stops.
    std::function<void(bool on)> LogToggled;

    // The P3 slider moved.
    std::function<void(int ms)> SliderMoved;
    // The close check: false (with the reason shown) refuses to close.
    std::function<bool()> QueryClose;
};

} // namespace kvx::app
