#include "app/frmMain.h"
#include "data/GridLayouts.h"
#include "data/TabLayout.h"
#include "enhanced/frmSelection.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "support/WidgetApp.h"

#include <QAction>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QToolBar>
#include <gtest/gtest.h>

using namespace kvx;

namespace {

// The window over fake session actions that record what was asked of them.
struct Fixture {
    MainScreen screen;
    std::vector<std::string> calls;
    bool portOpen = false;
    std::unique_ptr<app::frmMain> window;

    Fixture()
    {
        test::widgetApp();
        data::LayoutLiveDataGrid(screen);
        data::BuildTabs(screen, data::ModuleTabs(ModuleGeneric));
        app::MainActions a;
        auto record = [this](const char* what) { return [this, what] { calls.emplace_back(what); }; };
        a.IsPortOpen = [this] { return portOpen; };
        a.PrepareConnect = record("prepare");
        a.Disconnect = record("disconnect");
        a.RequestMode1 = record("live");
        a.Stop = record("stop");
        window = std::make_unique<app::frmMain>(screen, a);
        window->show();
    }
    QAction* toolbarAction(const char* key)
    {
        return window->findChild<QToolBar*>("Toolbar1")->findChild<QAction*>(key);
    }
    QPushButton* button(const char* name) { return window->findChild<QPushButton*>(name); }
};

} // namespace

TEST(frmMain, ToolbarDispatchesByKey)
{
    Fixture f;
    int connects = 0, settings = 0;
    QObject::connect(f.window.get(), &app::frmMain::connectRequested, [&] { ++connects; });
    QObject::connect(f.window.get(), &app::frmMain::settingRequested, [&] { ++settings; });

    f.toolbarAction("Connect")->trigger();
    EXPECT_EQ(connects, 1);
    EXPECT_EQ(f.calls, std::vector<std::string>{"prepare"});

    // Connect with the port already open does nothing.
    f.portOpen = true;
    f.toolbarAction("Connect")->trigger();
    EXPECT_EQ(connects, 1);

    f.toolbarAction("Disconnect")->trigger();
    f.toolbarAction("Setting")->trigger();
    EXPECT_EQ(settings, 1);
    EXPECT_EQ(f.calls.back(), "disconnect");
    // Without a player window to make, its button is off rather than silent.
    EXPECT_FALSE(f.toolbarAction("Log Controller")->isEnabled());
}

TEST(frmMain, ModeButtonsNeedAnOpenPortAndUnbuiltServicesAreDisabled)
{
    Fixture f;
    QTest::mouseClick(f.button("cmdRequestMode1"), Qt::LeftButton);
    EXPECT_TRUE(f.calls.empty());
    f.portOpen = true;
    QTest::mouseClick(f.button("cmdRequestMode1"), Qt::LeftButton);
    EXPECT_EQ(f.calls, std::vector<std::string>{"live"});
    for (const char* name : {"cmdRequestMode2", "cmdMode3", "cmdRequestMode6", "cmdRequestLiveCombo"})
        EXPECT_FALSE(f.button(name)->isEnabled()) << name;
}

TEST(frmMain, PortLightAndTabsFollowTheModels)
{
    Fixture f;
    f.portOpen = true;
    QTest::qWait(1100);
    EXPECT_EQ(f.screen.StatusBar1.lamp(2), Lamp::Green);

    auto* tabs = f.window->findChild<QTabBar*>("TabStrip1");
    ASSERT_EQ(tabs->count(), 7);
    EXPECT_EQ(tabs->tabToolTip(3), "Mode 5 - Montior O2 Sensor Status");
    tabs->setCurrentIndex(2);
    EXPECT_EQ(f.screen.TabStrip1.selectedCaption(), "READ/CLEAR FAULTS");
    EXPECT_TRUE(f.window->findChild<QWidget*>("Frame3")->isVisible());
    EXPECT_FALSE(f.window->findChild<QWidget*>("Frame1")->isVisible());
}

TEST(frmMain, RestoringTheRecordedSizePutsControlsBack)
{
    Fixture f;
    // The resizer's tags: the button keeps its place and size, the status bar its height.
    EXPECT_EQ(f.window->findChild<QWidget*>("cmdGo")->property("Tag").toString(), "ZQXRESIZEXXXXX");
    EXPECT_EQ(f.window->findChild<QWidget*>("StatusBar1")->property("Tag").toString(), "ZQXRESIZEYYYXY");
    EXPECT_EQ(f.window->findChild<QWidget*>("Label1")->property("Tag").toString(), "ZQXRESIZEYY0YY");
    auto* grid = f.window->findChild<QWidget*>("GridMode1");
    auto* go = f.window->findChild<QWidget*>("cmdGo");
    const QRect gridAt = grid->geometry(), goAt = go->geometry();
    const QSize size = f.window->size();
    f.window->resize(1000, 750);
    EXPECT_GT(grid->width(), gridAt.width());
    EXPECT_EQ(go->geometry(), goAt);
    f.window->resize(size);
    EXPECT_EQ(grid->geometry(), gridAt);
}

TEST(frmSelection, EachModuleConnectsWithItsTabsAndAFailedAttemptKeepsTheWindowOpen)
{
    test::widgetApp();
    MainScreen screen;
    std::vector<int> tried;
    std::vector<std::size_t> tabsDuringConnect;
    bool succeed = false;
    enhanced::frmSelection selection(screen, [&](int module) {
        tried.push_back(module);
        EXPECT_EQ(screen.StatusBar1.text(1), "INIT IN PROGRESS...");
        tabsDuringConnect.push_back(screen.TabStrip1.tabs().size());
        return succeed;
    });
    selection.show();
    auto buttons = selection.findChildren<QPushButton*>("Command1");
    ASSERT_EQ(buttons.size(), 4);
    EXPECT_EQ(buttons[2]->text(), "NISSAN AUTO TRANSMISSION");
    EXPECT_EQ(buttons[3]->text(), "TOYOTA ENGINE");

    for (QPushButton* button : buttons) {
        EXPECT_TRUE(button->isEnabled());
        QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_TRUE(selection.isVisible());
        EXPECT_TRUE(screen.TabStrip1.tabs().empty());
    }
    EXPECT_EQ(tabsDuringConnect, (std::vector<std::size_t>{7, 1, 1, 2}));

    succeed = true;
    QTest::mouseClick(buttons[3], Qt::LeftButton);
    EXPECT_FALSE(selection.isVisible());
    EXPECT_EQ(selection.result(), QDialog::Accepted);
    EXPECT_EQ(tried, (std::vector<int>{0, 1, 2, 3, 3}));
    EXPECT_EQ(screen.TabStrip1.tabs().size(), 2u);
}
