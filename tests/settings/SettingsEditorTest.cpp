#include "settings/SettingsEditor.h"
#include "settings/SettingsStore.h"
#include "support/OfflineSession.h"

#include <gtest/gtest.h>

namespace kvx::settings {
namespace {

// The dialog over a freshly loaded session; no port is ever opened.
struct Dialog : test::OfflineSession {
    SettingsEditor editor{session};

    Dialog()
    {
        LoadCommSettings(session);
        editor.Form_Load();
    }
};

TEST(SettingsEditor, LoadShowsTheSettingsWithApplyDisabledAndEditsEnableIt)
{
    Dialog d;
    EXPECT_EQ(d.editor.txtP3.text(), "300");
    EXPECT_EQ(d.editor.cmbTypeProtocol.text(), "Try All");
    EXPECT_EQ(d.editor.cmbPort.items().size(), 18u);
    EXPECT_FALSE(d.editor.cmdApply.enabled());
    EXPECT_EQ(d.screen.lblSpeed.text(), "300");

    d.editor.edit(d.editor.txtBaud, "9600");
    EXPECT_TRUE(d.editor.cmdApply.enabled());
    d.editor.cmdClose_Click();
    EXPECT_EQ(d.editor.txtBaud.text(), "10400");
    EXPECT_FALSE(d.editor.cmdApply.enabled());
    d.editor.choose(d.editor.cmbPort, 3);
    EXPECT_TRUE(d.editor.cmdApply.enabled());
}

TEST(SettingsEditor, P3IsCappedAt500)
{
    Dialog d;
    const std::pair<const char*, const char*> cases[] = {
        {"750", "500"}, {"500", "500"}, {"abc", "abc"}, {"501ms", "500"}, {"", ""}, {"-20", "-20"}};
    for (const auto& [typed, shown] : cases) {
        d.editor.edit(d.editor.txtP3, typed);
        EXPECT_EQ(d.editor.txtP3.text(), shown) << typed;
    }
}

TEST(SettingsEditor, DefaultAppliesAndSavesItsSetKeepingThePort)
{
    Dialog d;
    d.editor.choose(d.editor.cmbPort, d.editor.cmbPort.indexOf(kVirtualVehicleEntry));
    ASSERT_TRUE(d.editor.cmdApply_Click());
    ASSERT_TRUE(d.editor.cmdDefault_Click());
    EXPECT_FALSE(d.editor.cmdApply.enabled());
    const std::pair<const char*, const char*> stored[] = {
        {"BaudRate", "10400"}, {"Port", "0"}, {"KeepAlive", "700"}, {"P4Delay", "25"},
        {"InterByteDelay", "5"}, {"TypeProtocol", "4"}, {"Kwp2000InitDelay", "22"}, {"P3Delay", "275"}};
    for (const auto& [key, text] : stored)
        EXPECT_EQ(d.store.get(key), text) << key;
    EXPECT_EQ(d.session.settings.PortNumber, kVirtualVehiclePort);
    EXPECT_EQ(d.screen.tmrKeepAliveEnhance.interval(), 700);
    EXPECT_EQ(d.screen.sldSpeedP3.value(), 275);
    EXPECT_EQ(d.link.GetP3Delay(), 275);
}

TEST(SettingsEditor, NonNumberRefusesTheWholeApply)
{
    Dialog d;
    d.editor.edit(d.editor.txtKeepAlive, "800");
    d.editor.edit(d.editor.txtP4, "x5");
    EXPECT_FALSE(d.editor.cmdApply_Click());
    ASSERT_EQ(d.shell.boxes.size(), 1u);
    EXPECT_NE(d.shell.boxes[0].text.find("P4 Delay"), std::string::npos);
    EXPECT_EQ(d.session.settings.KeepAlive, 500);
    EXPECT_EQ(d.store.get("KeepAlive"), "");
    EXPECT_TRUE(d.editor.cmdApply.enabled());
}

TEST(SettingsEditor, TheElm327AndItsCanProtocolsAreChosenSavedAndRefusedWithTheCable)
{
    Dialog d;
    // The first four entries keep their places; CAN follows "Try All".
    ASSERT_EQ(d.editor.cmbTypeProtocol.items().size(), 8u);
    EXPECT_EQ(d.editor.cmbTypeProtocol.items()[3], "Try All");
    EXPECT_EQ(d.editor.cmbInterface.items(), (std::vector<std::string>{kInterfaceName, "ELM327"}));
    EXPECT_EQ(d.editor.cmbAdapterBaud.text(), "38400");

    d.editor.choose(d.editor.cmbTypeProtocol, 4);
    EXPECT_FALSE(d.editor.cmdApply_Click()) << "the K-line cable cannot reach CAN";
    ASSERT_EQ(d.shell.boxes.size(), 1u);
    EXPECT_NE(d.shell.boxes[0].text.find("CAN 11bit 500k is CAN"), std::string::npos);
    EXPECT_EQ(d.store.get("TypeProtocol"), "");

    d.editor.choose(d.editor.cmbInterface, 1);
    d.editor.choose(d.editor.cmbAdapterBaud, d.editor.cmbAdapterBaud.indexOf(kAutoBaudEntry));
    ASSERT_TRUE(d.editor.cmdApply_Click());
    EXPECT_EQ(d.store.get("TypeProtocol"), "5");
    EXPECT_EQ(d.store.get("Interface"), "1");
    EXPECT_EQ(d.store.get("AdapterBaud"), "0");
    EXPECT_TRUE(d.link.SearchesProtocols()) << "the link now drives the adapter";

    // The next start reads them back.
    d.session.settings = CommSettings{};
    LoadCommSettings(d.session);
    d.editor.Form_Load();
    EXPECT_EQ(d.editor.cmbInterface.text(), "ELM327");
    EXPECT_EQ(d.editor.cmbTypeProtocol.text(), "CAN 11bit 500k");
    EXPECT_EQ(d.editor.cmbAdapterBaud.text(), kAutoBaudEntry);
}

TEST(SettingsEditor, TheVirtualVehicleEntriesChooseTheirInterfaceAndFollowIt)
{
    Dialog d;
    d.editor.choose(d.editor.cmbPort, d.editor.cmbPort.indexOf(kVirtualAdapterEntry));
    EXPECT_EQ(d.editor.cmbInterface.text(), "ELM327");
    EXPECT_TRUE(d.editor.cmbVehicleState.enabled()) << "a car can be chosen behind the adapter too";
    // The interface decides which face of the virtual vehicle the port entry names.
    d.editor.choose(d.editor.cmbInterface, 0);
    EXPECT_EQ(d.editor.cmbPort.text(), kVirtualVehicleEntry);
    d.editor.choose(d.editor.cmbInterface, 1);
    EXPECT_EQ(d.editor.cmbPort.text(), kVirtualAdapterEntry);
    ASSERT_TRUE(d.editor.cmdApply_Click());
    EXPECT_EQ(d.store.get("Port"), "0");
    EXPECT_EQ(d.store.get("Interface"), "1");
    d.editor.Form_Load();
    EXPECT_EQ(d.editor.cmbPort.text(), kVirtualAdapterEntry);
    // A serial port stays as it is whatever the interface.
    d.editor.choose(d.editor.cmbPort, 0);
    d.editor.choose(d.editor.cmbInterface, 0);
    EXPECT_EQ(d.editor.cmbPort.text(), "1");
}

} // namespace
} // namespace kvx::settings
