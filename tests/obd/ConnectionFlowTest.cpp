#include "data/GridLayouts.h"
#include "obd/Connection.h"
#include "obd/Disconnect.h"
#include "support/CoreVehicle.h"
#include "support/ProgramWindow.h"

#include <gtest/gtest.h>

namespace kvx::obd {
namespace {

TEST(ConnectEcu, TryAllTriesEachProtocolOnceThenInitFailedLeavingFourAndASingleOneGetsOneAttempt)
{
    using Texts = std::vector<std::string>;
    const std::pair<int, Texts> cases[] = {
        {link::TryAll, {"TRYING PROTOCOL 1...", "TRYING PROTOCOL 2...", "TRYING PROTOCOL 3...", "INIT FAILED"}},
        {link::Kwp2000Fast, {"TRYING PROTOCOL 3...", "INIT FAILED"}},
    };
    for (const auto& [protocol, texts] : cases) {
        test::CoreVehicle car(test::silentWakeUps({0, 1, 2}), protocol);
        EXPECT_FALSE(ConnectEcu(car.session));
        EXPECT_EQ(car.statusTexts, texts);
        EXPECT_EQ(car.session.settings.ProtocolNumber, protocol);
        EXPECT_TRUE(car.session.LinkDown);
        EXPECT_TRUE(car.shell.boxes.empty());
        EXPECT_FALSE(car.screen.tmrKeepAlive.enabled());
    }
}

TEST(ConnectEcu, IsoSessionWithTwoUnitsPreparesTheScreen)
{
    test::CoreVehicle car;
    ASSERT_TRUE(ConnectEcu(car.session)) << (car.shell.boxes.empty() ? "" : car.shell.boxes[0].text);
    EXPECT_EQ(car.session.HeaderByte1, "68");
    EXPECT_EQ(car.session.HeaderByte2, "6A");
    EXPECT_FALSE(car.session.LinkDown);
    // Both units answer the bitmap request; the last new one is the unit in use.
    ASSERT_EQ(car.screen.cmbModule.items().size(), 2u);
    EXPECT_EQ(car.session.EcuAddress, car.screen.cmbModule.items().back());
    EXPECT_EQ(car.countStatus("REQUESTING...00"), 1);
    EXPECT_EQ(car.screen.StatusBar1.text(1), "");

    // Range markers are never rows; the combo lists hold "OFF" and then the grid's rows.
    const GridModel& grid = car.screen.GridMode1;
    ASSERT_GT(grid.rows(), 1);
    EXPECT_TRUE(grid.cell(1, data::MarkerColumn).centered);
    for (int row = 1; row < grid.rows(); ++row)
        EXPECT_NE(std::stoi(grid.text(row, data::PidColumn), nullptr, 16) % 0x20, 0);
    EXPECT_EQ(car.screen.cmbPid[0].items().size(), static_cast<std::size_t>(grid.rows()));
    EXPECT_EQ(car.screen.cmbPid[0].items()[1].substr(0, 5), grid.text(1, data::PidColumn) + " - ");
    EXPECT_TRUE(car.screen.tmrKeepAlive.enabled());
    EXPECT_TRUE(car.screen.control("chkLog").enabled());
}

TEST(Disconnect, ClosesThePortAndPutsTryAllBack)
{
    test::CoreVehicle car({}, link::TryAll);
    ASSERT_TRUE(ConnectEcu(car.session));
    EXPECT_EQ(car.session.settings.ProtocolNumber, link::Iso9141Slow);

    car.session.SilenceCount = 4;
    Disconnect(car.session);
    EXPECT_FALSE(car.link.IsPortOpen());
    EXPECT_EQ(car.session.SilenceCount, 0);
    EXPECT_EQ(car.session.settings.ProtocolNumber, link::TryAll);
    EXPECT_TRUE(car.screen.cmbModule.items().empty());
    EXPECT_FALSE(car.screen.tmrKeepAlive.enabled());
}

// A protocol number the link refuses, left in the store by another version or a hand edit: the
// link's error ends the connection, and the disconnect routine leaves the window free to connect
// again or exit.
TEST(ConnectEcu, ALinkErrorInsideTheConnectionClosesItAgain)
{
    for (int module : {ModuleGeneric, ModuleToyota}) {
        for (const char* protocol : {"0", "5"}) {
            SCOPED_TRACE(std::string(protocol) + " module " + std::to_string(module));
            test::ProgramWindow p("", {{"TypeProtocol", protocol}});
            EXPECT_FALSE(p.actions.ConnectModule(module));
            ASSERT_EQ(p.shell.boxes.size(), 1u);
            EXPECT_EQ(p.shell.boxes[0].title, kFailedCommunication);
            EXPECT_TRUE(p.session.LinkDown);
            EXPECT_FALSE(p.link.IsPortOpen());
            EXPECT_TRUE(p.find<QWidget>("Toolbar1")->findChild<QAction*>("Connect")->isEnabled());
            EXPECT_FALSE(p.find<QWidget>("Toolbar1")->findChild<QAction*>("Disconnect")->isEnabled());
            p.exit();
            EXPECT_FALSE(p.window->isVisible());
        }
    }
}

} // namespace
} // namespace kvx::obd
