#include "data/GridLayouts.h"
#include "enhanced/Modules.h"
#include "enhanced/ToyotaConnection.h"
#include "enhanced/ToyotaLiveData.h"
#include "log/LogFile.h"
#include "obd/Connection.h"
#include "obd/LiveCombo.h"
#include "support/CoreVehicle.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace kvx::enhanced {
namespace {

int testerBytes(const test::CoreVehicle& car)
{
    return static_cast<int>(car.vehicle.record().bytes(link::TraceOrigin::Tester).size());
}

// A grid of hand-made rows, each ticked.
void setRows(test::CoreVehicle& car, std::initializer_list<const char*> labels)
{
    GridModel& grid = car.screen.GridMode1;
    grid.setRows(1);
    for (const char* label : labels) {
        const int row = grid.addRow();
        grid.setCell(row, data::MarkerColumn, data::MarkerCell(data::kTickedMarker));
        grid.setText(row, data::PidColumn, label);
    }
}

TEST(ToyotaConnect, AsksTheThreeManufacturerBitmapsAndMarksWhatTheyHold)
{
    test::CoreVehicle car;
    car.session.SupportedPids[0xF0][0] = true; // left from an earlier session
    ASSERT_TRUE(ConnectModule(car.session, ModuleToyota));
    EXPECT_EQ(car.session.HeaderByte1, "68");
    EXPECT_EQ(car.session.HeaderByte2, "6A");
    for (const char* pid : {"B0", "C0", "E0"})
        EXPECT_EQ(car.countStatus(std::string("REQUESTING...") + pid), 1) << pid;
    EXPECT_EQ(car.countStatus("REQUESTING...00"), 0);
    EXPECT_TRUE(car.session.SupportedPids[0xB1][0]);
    EXPECT_TRUE(car.session.SupportedPids[0xE2][0]);
    EXPECT_FALSE(car.session.SupportedPids[0xB4][0]);
    EXPECT_FALSE(car.session.SupportedPids[0xF0][0]);
    // One row and one combo entry per named sub-value, in parameter, byte and sub-value order.
    const GridModel& grid = car.screen.GridMode1;
    ASSERT_GT(grid.rows(), 3);
    EXPECT_EQ(grid.text(1, data::PidColumn), "B101 0");
    EXPECT_EQ(grid.text(2, data::PidColumn), "B103 0");
    for (const ListModel& list : car.screen.cmbPid) {
        ASSERT_EQ(static_cast<int>(list.items().size()), grid.rows());
        EXPECT_EQ(list.items().front(), "OFF");
        EXPECT_EQ(list.items()[2], "B103 0 - " + grid.text(2, data::DescriptionColumn));
        EXPECT_EQ(list.text(), "OFF");
    }
}

TEST(ToyotaLiveData, OneRequestServesEveryRowOfItsParameterAndIsRecordedWithTheRowLabel)
{
    test::CoreVehicle car;
    ASSERT_TRUE(ConnectModule(car.session, ModuleToyota));
    setRows(car, {"B101 0", "B103 0", "C101 0"});
    car.screen.GridMode1.setText(3, data::MarkerColumn, data::kEmptyMarker);
    QTemporaryDir dir;
    car.session.LogFileHandle =
        std::make_shared<log::LogFile>(dir.filePath("t.log").toStdString(), log::LogFile::Mode::Create);
    car.session.Logging = true;
    const long first = car.session.LogRecordNumber;

    const std::string lastGeneric = car.session.LastFrame;
    const int before = testerBytes(car);
    car.session.Busy = true;
    EXPECT_TRUE(PollToyotaLiveData(car.session, car.session.HeaderByte1, car.session.HeaderByte2));

    // One request "68 6A F1 01 B1" and its checksum; the unticked C1 row is not asked.
    EXPECT_EQ(testerBytes(car) - before, 6);
    EXPECT_NE(car.session.ToyotaLastFrame.find("686AF101B1"), std::string::npos);
    const std::string& reply = car.session.ToyotaLastResponse;
    ASSERT_EQ(reply.substr(0, 10), "486B1041B1");
    const GridModel& grid = car.screen.GridMode1;
    // Engine speed from the first two data bytes, vehicle speed from the third.
    EXPECT_EQ(grid.text(1, data::ValueColumn), car.session.toyotaDecoder.SensorValue(1, 0, reply, 1));
    EXPECT_EQ(grid.text(2, data::ValueColumn), car.session.toyotaDecoder.SensorValue(3, 0, reply, 1));
    EXPECT_EQ(grid.text(2, data::AltValueColumn), car.session.toyotaDecoder.SensorValue(3, 0, reply, 2));
    EXPECT_NE(grid.text(1, data::ValueColumn), grid.text(2, data::ValueColumn));
    EXPECT_EQ(grid.text(3, data::ValueColumn), "");
    ASSERT_EQ(car.session.LogRecordNumber - first, 1);
    EXPECT_EQ(car.session.LogFileHandle->readRecord(first).value(), reply + " B101 0");
    EXPECT_EQ(car.session.LastFrame, lastGeneric);
}

TEST(ToyotaLiveData, SixMissesEndTheSession)
{
    test::CoreVehicle car;
    ASSERT_TRUE(ConnectModule(car.session, ModuleToyota));
    setRows(car, {"B101 0"});
    car.vehicle.setSilent(0x10, true);
    car.vehicle.setSilent(0x18, true);
    RunToyotaLiveData(car.session);
    EXPECT_EQ(car.countStatus("RECONNECTING..."), 3);
    ASSERT_EQ(car.shell.boxes.size(), 1u);
    EXPECT_EQ(car.shell.boxes[0].text, "No Response From ECU");
    EXPECT_TRUE(car.session.LinkDown);
    EXPECT_FALSE(car.screen.tmrKeepAlive.enabled());
}

TEST(ToyotaLiveCombo, SlotsAskTheirParameterAndShowTheirSubValue)
{
    test::CoreVehicle car;
    ASSERT_TRUE(ConnectModule(car.session, ModuleToyota));
    car.screen.TabStrip1.select(6);
    ASSERT_EQ(car.screen.TabStrip1.selectedCaption(), obd::kComboCaption);
    car.screen.cmbPid[1].setText("B103 0 - SPEED");
    car.shell.onProcessEvents = [&] {
        if (car.shell.pumps >= 5)
            car.session.Busy = false;
    };
    StartModuleLiveCombo(car.session);
    EXPECT_NE(car.session.LastFrame.find("686AF101B1"), std::string::npos);
    EXPECT_EQ(car.screen.lblPid[1].text(),
              car.session.toyotaDecoder.SensorValue(3, 0, car.session.LastResponse, 1));
    EXPECT_NE(car.screen.lblPid[1].text(), "");
    EXPECT_EQ(car.screen.lblPida[1].text(),
              car.session.toyotaDecoder.SensorValue(3, 0, car.session.LastResponse, 2));
    EXPECT_TRUE(car.screen.lblPid[0].text().empty());
    EXPECT_TRUE(car.screen.tmrKeepAlive.enabled());
}

} // namespace
} // namespace kvx::enhanced
