#include "settings/SettingsStore.h"
#include "support/OfflineSession.h"

#include <QSettings>
#include <gtest/gtest.h>

namespace kvx::settings {
namespace {

// The start-up load of the settings.
struct StartUp : test::OfflineSession {
    const CommSettings& load()
    {
        LoadCommSettings(session);
        return session.settings;
    }
};

TEST(SettingsStore, EmptyStoreGivesStartupDefaults)
{
    StartUp program;
    const CommSettings& s = program.load();
    EXPECT_EQ(s.BaudRate, 10400);
    EXPECT_EQ(s.PortNumber, 1);
    EXPECT_EQ(s.KeepAlive, 500);
    EXPECT_EQ(s.P3Delay, 300);
    EXPECT_EQ(s.P4Delay, 25);
    EXPECT_EQ(s.InterByteDelay, 10);
    EXPECT_EQ(s.ProtocolNumber, 4);
    EXPECT_TRUE(s.TryAllProtocols);
    EXPECT_EQ(s.Kwp2000InitDelay, "22");
    EXPECT_TRUE(program.shell.boxes.empty());
}

TEST(SettingsStore, ValueThatDoesNotFitItsFieldLeavesZeroAndLoadingGoesOn)
{
    StartUp program;
    program.store.put("P4Delay", "fast");
    program.store.put("InterByteDelay", "70000");
    program.store.put("BaudRate", "3000000000");
    program.store.put("Port", "7");
    program.store.put("TypeProtocol", "2");
    program.store.put("Kwp2000InitDelay", "abc");
    const CommSettings& s = program.load();
    EXPECT_EQ(s.P4Delay, 0);
    EXPECT_EQ(s.InterByteDelay, 0);
    EXPECT_EQ(s.BaudRate, 0);
    EXPECT_EQ(s.PortNumber, 7);
    EXPECT_EQ(s.ProtocolNumber, 2);
    EXPECT_FALSE(s.TryAllProtocols);
    // The KWP2000 delay is text and kept as the store holds it.
    EXPECT_EQ(s.Kwp2000InitDelay, "abc");
}

TEST(SettingsStore, SavesDecimalTextUnderTheSectionAndP3Alone)
{
    test::TempSettings store;
    CommSettings s;
    s.PortNumber = kVirtualVehiclePort;
    s.ProtocolNumber = 3;
    s.P3Delay = 120;
    SaveCommSettings(s);
    EXPECT_EQ(store.get("Port"), "0");
    EXPECT_EQ(store.get("TypeProtocol"), "3");
    EXPECT_EQ(store.get("Kwp2000InitDelay"), "22");

    CommSettings other;
    other.P3Delay = 200;
    other.KeepAlive = 999;
    SaveP3Delay(other);
    EXPECT_EQ(store.get("P3Delay"), "200");
    EXPECT_EQ(store.get("KeepAlive"), "500");
}

} // namespace
} // namespace kvx::settings
