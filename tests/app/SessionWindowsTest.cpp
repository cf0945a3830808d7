#include "settings/SettingsEditor.h"
#include "settings/frmSetting.h"
#include "support/ProgramWindow.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <QToolBar>
#include <gtest/gtest.h>

using namespace kvx;

using Program = test::ProgramWindow;

TEST(SettingsWindow, TypedP3IsCappedAndApplyStoresWhatTheFieldsHold)
{
    Program p;
    settings::SettingsEditor editor(p.session);
    settings::frmSetting dialog(editor);
    dialog.show();
    auto* apply = dialog.findChild<QPushButton*>("cmdApply");
    EXPECT_FALSE(apply->isEnabled());

    auto* p3 = dialog.findChild<QLineEdit*>("txtP3");
    p3->selectAll();
    QTest::keyClicks(p3, "750");
    EXPECT_EQ(p3->text(), "500");
    EXPECT_TRUE(apply->isEnabled());

    auto* protocol = dialog.findChild<QComboBox*>("cmbTypeProtocol");
    protocol->setCurrentIndex(2);
    emit protocol->activated(2);
    QTest::mouseClick(apply, Qt::LeftButton);
    EXPECT_FALSE(apply->isEnabled());
    EXPECT_EQ(p.store.get("P3Delay"), "500");
    EXPECT_EQ(p.store.get("TypeProtocol"), "3");
    EXPECT_FALSE(p.session.settings.TryAllProtocols);
    // Apply moves the main window's slider too.
    EXPECT_EQ(p.window->findChild<QSlider*>("sldSpeedP3")->value(), 500);

    protocol->setCurrentIndex(3);
    emit protocol->activated(3);
    QTest::mouseClick(apply, Qt::LeftButton);
    EXPECT_EQ(p.store.get("TypeProtocol"), "4");
    EXPECT_TRUE(p.session.settings.TryAllProtocols);
}

TEST(MainWindowSession, ConnectedOrReplayingRefusesToCloseAndTheSliderIsSavedAtExit)
{
    Program p;
    ASSERT_TRUE(p.actions.ConnectModule(ModuleGeneric));
    EXPECT_GT(p.screen.GridMode1.rows(), 5);
    p.exit();
    EXPECT_TRUE(p.window->isVisible());
    EXPECT_EQ(p.screen.StatusBar1.text(1), "DISCONNECT TO EXIT");

    p.window->findChild<QToolBar*>("Toolbar1")->findChild<QAction*>("Disconnect")->trigger();
    p.session.Replaying = true;
    p.exit();
    EXPECT_TRUE(p.window->isVisible());
    EXPECT_EQ(p.screen.StatusBar1.text(1), "STOP PLAYING LOG");

    p.session.Replaying = false;
    p.window->findChild<QSlider*>("sldSpeedP3")->setValue(200);
    EXPECT_EQ(p.window->findChild<QLabel*>("lblSpeed")->text(), "200");
    p.exit();
    EXPECT_FALSE(p.window->isVisible());
    EXPECT_EQ(p.store.get("P3Delay"), "200");
}
