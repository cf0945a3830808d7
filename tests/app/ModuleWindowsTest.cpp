#include "enhanced/frmSelection.h"
#include "support/ProgramWindow.h"

#include <QComboBox>
#include <QTableView>
#include <gtest/gtest.h>

using namespace kvx;

namespace {

// Grid row `row` as the window shows it (the heading row is the view's header).
std::string viewText(const test::ProgramWindow& p, int row, int col)
{
    return p.find<QTableView>("GridMode1")->model()->index(row - 1, col).data().toString().toStdString();
}

} // namespace

TEST(ModuleWindows, NissanEngineShowsOnlyLiveDataPollsItsItemsAndHoldsTheSettingsUntilDisconnect)
{
    test::ProgramWindow p;
    ASSERT_TRUE(p.chooseModule(ModuleNissanEcu));
    const auto* tabs = p.find<QTabBar>("TabStrip1");
    ASSERT_EQ(tabs->count(), 1);
    EXPECT_EQ(tabs->tabText(0), "LIVE DATA");
    EXPECT_EQ(p.find<QComboBox>("cmbModule")->currentText(), "10");
    EXPECT_FALSE(p.window->findChild<QToolBar*>("Toolbar1")->findChild<QAction*>("Setting")->isEnabled());
    EXPECT_EQ(viewText(p, 1, 1), "1101");

    p.runFor("cmdRequestMode1", "cmdStop", 30);
    EXPECT_FALSE(p.session.Busy);
    EXPECT_TRUE(QString::fromStdString(viewText(p, 1, 3)).endsWith("rpm")) << viewText(p, 1, 3);
    EXPECT_TRUE(p.screen.tmrKeepAliveEnhance.enabled());

    p.toolbar("Disconnect");
    EXPECT_TRUE(p.window->findChild<QToolBar*>("Toolbar1")->findChild<QAction*>("Setting")->isEnabled());
    EXPECT_FALSE(p.screen.tmrKeepAliveEnhance.enabled());
}

