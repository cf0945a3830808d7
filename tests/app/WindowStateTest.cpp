#include "enhanced/frmSelection.h"
#include "settings/SettingsEditor.h"
#include "settings/frmSetting.h"
#include "support/ProgramWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QStatusBar>
#include <QTableView>
#include <QTextEdit>
#include <gtest/gtest.h>
#include <map>

using namespace kvx;

namespace {

// Enabled and visible, as the user sees them, of the controls that only make sense in a session.
std::map<std::string, std::pair<bool, bool>> sessionControls(const test::ProgramWindow& p)
{
    std::map<std::string, std::pair<bool, bool>> states;
    for (const char* name : {"cmdRequestMode1", "cmdStop", "cmdGo", "cmbModule", "chkLog", "cmdRequestLiveCombo",
                             "cmdStopLiveCombo", "cmdMode3"}) {
        const auto* w = p.find<QWidget>(name);
        states[name] = {w->isEnabled(), w->isVisibleTo(p.window.get())};
    }
    for (const char* key : {"Connect", "Disconnect", "Setting"})
        states[key] = {p.window->findChild<QToolBar*>("Toolbar1")->findChild<QAction*>(key)->isEnabled(), true};
    return states;
}

// Every value cell of the live grid as the window shows it, joined.
std::string shownValues(const test::ProgramWindow& p)
{
    const QAbstractItemModel* view = p.find<QTableView>("GridMode1")->model();
    std::string values;
    for (int row = 0; row < view->rowCount(); ++row)
        for (int col : {3, 4})
            values += view->index(row, col).data().toString().toStdString();
    return values;
}

} // namespace

TEST(WindowState, StartUpIsTheStateADisconnectLeavesAndNoSessionMeansNoLog)
{
    test::ProgramWindow p;
    const auto atStart = sessionControls(p);
    EXPECT_FALSE(atStart.at("cmdRequestMode1").first);
    EXPECT_FALSE(atStart.at("cmdStop").first);
    EXPECT_FALSE(atStart.at("chkLog").first);
    EXPECT_FALSE(atStart.at("cmdGo").second);
    EXPECT_FALSE(atStart.at("cmbModule").second);

    // The routine behind LOG DATA, reached while no session stands, makes no file.
    p.actions.LogToggled(true);
    EXPECT_FALSE(p.session.Logging);
    EXPECT_FALSE(p.find<QCheckBox>("chkLog")->isChecked());
    EXPECT_TRUE(QDir(p.logFolder()).entryList({"*.log"}).isEmpty());

    ASSERT_TRUE(p.actions.ConnectModule(ModuleGeneric));
    EXPECT_TRUE(p.find<QWidget>("cmdStop")->isEnabled());
    EXPECT_TRUE(p.find<QWidget>("cmdGo")->isVisibleTo(p.window.get()));
    p.toolbar("Disconnect");
    EXPECT_EQ(sessionControls(p), atStart);
}

TEST(WindowState, ClosingTheSelectionAfterAFailedTryBringsTheTabsBack)
{
    test::ProgramWindow p;
    // No serial device answers to port 16 here: the connection fails.
    p.session.settings.PortNumber = 16;
    enhanced::frmSelection selection(p.screen, p.actions.ConnectModule, p.window.get());
    ASSERT_FALSE(p.chooseModule(selection, ModuleToyota));
    EXPECT_TRUE(selection.isVisible());
    EXPECT_EQ(p.find<QTabBar>("TabStrip1")->count(), 0);
    for (int frame = 1; frame <= 7; ++frame)
        EXPECT_FALSE(p.find<QWidget>(("Frame" + std::to_string(frame)).c_str())->isVisible()) << frame;

    selection.close();
    const auto* tabs = p.find<QTabBar>("TabStrip1");
    ASSERT_EQ(tabs->count(), 2);
    EXPECT_EQ(tabs->tabText(1), "LIVE DATA COMBO");
    EXPECT_TRUE(p.find<QWidget>("Frame1")->isVisible());

    // Closed without any try, the window keeps what it had.
    enhanced::frmSelection untouched(p.screen, p.actions.ConnectModule, p.window.get());
    untouched.show();
    untouched.close();
    EXPECT_EQ(tabs->count(), 2);
}

TEST(WindowState, DisconnectAndANewModuleLeaveNoEarlierValueOnScreen)
{
    test::ProgramWindow p;
    enhanced::frmSelection generic(p.screen, p.actions.ConnectModule, p.window.get());
    ASSERT_TRUE(p.chooseModule(generic, ModuleGeneric));
    // Stopped in the middle of a pass: some rows hold values, the rest do not.
    p.runFor("cmdRequestMode1", "cmdStop", 5);
    EXPECT_FALSE(shownValues(p).empty());
    auto* grid = p.find<QTableView>("GridMode1");
    grid->scrollToBottom();
    EXPECT_GT(grid->verticalScrollBar()->value(), 0);

    p.showTab(6);
    const auto lists = p.window->findChildren<QComboBox*>("cmbPid");
    lists[0]->setCurrentIndex(1);
    emit lists[0]->activated(1);
    p.runFor("cmdRequestLiveCombo", "cmdStopLiveCombo", 3);
    EXPECT_FALSE(p.window->findChildren<QLabel*>("lblPid")[0]->text().isEmpty());
    p.showTab(2);
    p.click("cmdMode3");
    EXPECT_FALSE(p.find<QTextEdit>("txtMode347")->toPlainText().isEmpty());

    // Disconnect clicked while a request is on its way (taken in the link's wait before it): the
    // loop ends, and the reply that still comes is not shown on the cleared screen.
    p.showTab(0);
    QMetaObject::invokeMethod(p.window.get(), [&] { p.toolbar("Disconnect"); }, Qt::QueuedConnection);
    p.click("cmdRequestMode1");
    EXPECT_TRUE(p.session.LinkDown);
    EXPECT_EQ(shownValues(p), "");
    for (const QLabel* label : p.window->findChildren<QLabel*>("lblPid"))
        EXPECT_TRUE(label->text().isEmpty());
    EXPECT_TRUE(p.find<QTextEdit>("txtMode347")->toPlainText().isEmpty());

    // The Toyota unit's grid opens at its top, with its own rows and no value yet.
    enhanced::frmSelection toyota(p.screen, p.actions.ConnectModule, p.window.get());
    ASSERT_TRUE(p.chooseModule(toyota, ModuleToyota));
    EXPECT_EQ(grid->verticalScrollBar()->value(), 0);
    EXPECT_EQ(shownValues(p), "");
    for (const QLabel* label : p.window->findChildren<QLabel*>("lblPida"))
        EXPECT_TRUE(label->text().isEmpty());
}

TEST(WindowState, AVirtualVehicleRunIsLabelledAndApplySavesTheDialogsPort)
{
    test::ProgramWindow p;
    EXPECT_TRUE(p.window->windowTitle().contains("VIRTUAL VEHICLE"));
    auto* banner = p.find<QLabel>("lblVirtualVehicle");
    EXPECT_TRUE(banner->isVisible());
    EXPECT_EQ(banner->text(), "VIRTUAL VEHICLE");

    // The settings as the toolbar opens them, changed by the user before the dialog closes.
    settings::SettingsEditor editor(p.session);
    std::function<void(settings::frmSetting&)> user;
    QObject::connect(p.window.get(), &app::frmMain::settingRequested, p.window.get(), [&] {
        settings::frmSetting dialog(editor, p.window.get());
        dialog.show();
        user(dialog);
    });
    auto apply = [&](settings::frmSetting& dialog) { p.click(dialog.findChild<QPushButton*>("cmdApply")); };

    // An Apply that leaves the port alone keeps the store's port, and the run its simulator.
    user = [&](settings::frmSetting& dialog) {
        auto* p3 = dialog.findChild<QLineEdit*>("txtP3");
        p3->selectAll();
        QTest::keyClicks(p3, "250");
        apply(dialog);
    };
    p.toolbar("Setting");
    EXPECT_EQ(p.store.get("P3Delay"), "250");
    EXPECT_EQ(p.store.get("Port"), "1");
    EXPECT_TRUE(banner->isVisible());

    // A port picked in the dialog is the one saved and used, and the label goes.
    auto pickPort = [&](const char* entry) {
        return [&, entry](settings::frmSetting& dialog) {
            auto* port = dialog.findChild<QComboBox*>("cmbPort");
            const int index = port->findText(entry);
            port->setCurrentIndex(index);
            emit port->activated(index);
            apply(dialog);
        };
    };
    user = pickPort("3");
    p.toolbar("Setting");
    EXPECT_EQ(p.store.get("Port"), "3");
    EXPECT_EQ(p.session.settings.PortNumber, 3);
    EXPECT_FALSE(banner->isVisible());
    EXPECT_EQ(p.window->windowTitle(), "Korvenatronix OBD-II");

    // The simulator chosen in the dialog is a choice like any other, and is labelled again.
    user = pickPort("Virtual Vehicle");
    p.toolbar("Setting");
    EXPECT_EQ(p.store.get("Port"), "0");
    EXPECT_TRUE(banner->isVisible());
    ASSERT_TRUE(p.actions.ConnectModule(ModuleGeneric));
    EXPECT_TRUE(p.window->windowTitle().contains("VIRTUAL VEHICLE"));
    EXPECT_TRUE(banner->isVisible());
}
