#include "settings/SettingsEditor.h"
#include "settings/frmSetting.h"
#include "support/ProgramWindow.h"
#include "support/Watchdog.h"

#include <QComboBox>
#include <QLineEdit>
#include <gtest/gtest.h>

using namespace kvx;

namespace {

// What the settings dialog shows for the program's settings.
QString dialogProtocol(test::ProgramWindow& p)
{
    settings::SettingsEditor editor(p.session);
    settings::frmSetting dialog(editor);
    return dialog.findChild<QComboBox*>("cmbTypeProtocol")->currentText();
}

} // namespace

TEST(StartUpSettings, ASavedSingleProtocolIsShownTriedAloneAndKept)
{
    sim::VehicleConfig car;
    car.faults.wakeUps[0] = sim::Fault::Silence;
    test::ProgramWindow p(nullptr, {{"TypeProtocol", "3"}}, car);
    EXPECT_FALSE(p.session.settings.TryAllProtocols);
    EXPECT_EQ(dialogProtocol(p), "KW2000 Fast");

    EXPECT_FALSE(p.actions.ConnectModule(ModuleGeneric));
    EXPECT_EQ(p.session.settings.ProtocolNumber, link::Kwp2000Fast);
    ASSERT_TRUE(p.actions.ConnectModule(ModuleGeneric));
    EXPECT_EQ(p.session.HeaderByte1, "C0");
    p.toolbar("Disconnect");
    EXPECT_EQ(p.session.settings.ProtocolNumber, link::Kwp2000Fast);
    EXPECT_EQ(dialogProtocol(p), "KW2000 Fast");

    test::ProgramWindow unknown(nullptr, {{"TypeProtocol", "9"}});
    EXPECT_EQ(unknown.session.settings.ProtocolNumber, 9);
    EXPECT_EQ(dialogProtocol(unknown), "");
}

TEST(StartUpSettings, AStoredP3BeyondItsFieldIsNotUsedAndConnectGoesOn)
{
    const test::Watchdog watchdog("start-up and Connect with a P3 of 2147483647 stored");
    test::ProgramWindow p("", {{"P3Delay", "2147483647"}});
    EXPECT_EQ(p.session.settings.P3Delay, 0);
    EXPECT_TRUE(p.shell.boxes.empty());
    EXPECT_TRUE(p.actions.ConnectModule(ModuleGeneric));
}

TEST(StartUpSettings, AKeepAliveTheTimersCannotRunIsRefusedWithAWord)
{
    for (const char* stored : {"0", "1", "-5"}) {
        test::ProgramWindow p("", {{"KeepAlive", stored}});
        ASSERT_EQ(p.shell.boxes.size(), 1u) << stored;
        const auto& box = p.shell.boxes[0];
        EXPECT_EQ(box.title, "Settings");
        EXPECT_NE(box.text.find(std::string("Keep Alive (mS) of ") + stored + " is refused"), std::string::npos)
            << box.text;
        EXPECT_EQ(p.screen.tmrKeepAlive.interval(), kMinKeepAliveMs);
        EXPECT_EQ(p.screen.tmrKeepAliveEnhance.interval(), kMinKeepAliveMs);
        ASSERT_TRUE(p.actions.ConnectModule(ModuleGeneric));
        EXPECT_TRUE(p.screen.tmrKeepAlive.enabled());
        EXPECT_EQ(p.screen.tmrKeepAlive.interval(), kMinKeepAliveMs);
    }

    test::ProgramWindow p("");
    settings::SettingsEditor editor(p.session);
    settings::frmSetting dialog(editor);
    for (const char* typed : {"1", "-5", "99"}) {
        p.shell.boxes.clear();
        editor.edit(editor.txtKeepAlive, typed);
        EXPECT_FALSE(editor.cmdApply_Click()) << typed;
        ASSERT_EQ(p.shell.boxes.size(), 1u);
        EXPECT_NE(p.shell.boxes[0].text.find("Keep Alive (mS) must lie between 100"), std::string::npos)
            << p.shell.boxes[0].text;
        EXPECT_EQ(p.screen.tmrKeepAlive.interval(), 500);
        EXPECT_EQ(p.store.get("KeepAlive"), "");
    }
    editor.edit(editor.txtKeepAlive, "100");
    EXPECT_TRUE(editor.cmdApply_Click());
    EXPECT_EQ(p.screen.tmrKeepAlive.interval(), 100);
}
