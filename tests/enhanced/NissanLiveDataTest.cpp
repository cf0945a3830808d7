#include "data/GridLayouts.h"
#include "enhanced/Modules.h"
#include "enhanced/NissanKeepAlive.h"
#include "enhanced/NissanLiveData.h"
#include "log/LogFile.h"
#include "obd/KeepAlive.h"
#include "support/CoreVehicle.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace kvx::enhanced {
namespace {

constexpr std::uint8_t kEngine = 0x10;

struct NissanCar : test::CoreVehicle {
    NissanCar() { connected = ConnectModule(session, ModuleNissanEcu); }

    // Stops the live-data loop once events have been pumped this many times.
    void stopAfter(int pumps)
    {
        shell.onProcessEvents = [this, pumps] {
            if (shell.pumps >= pumps)
                session.Busy = false;
        };
        shell.pumps = 0;
    }
    int wakeUps() const { return static_cast<int>(vehicle.record().inits.size()); }

    bool connected = false;
};

TEST(NissanLiveData, UntickedRowsAreHighlightedButNotAsked)
{
    NissanCar car;
    ASSERT_TRUE(car.connected);
    GridModel& grid = car.screen.GridMode1;
    ASSERT_GE(grid.rows(), 4);
    car.untickAll();
    grid.setText(2, data::MarkerColumn, data::kTickedMarker);
    const std::string second = grid.text(2, data::PidColumn);

    car.stopAfter(grid.rows() - 1);
    car.session.LastFrame.clear();
    StartModuleLiveData(car.session);

    EXPECT_NE(car.session.LastFrame.find("22" + second + "0401"), std::string::npos) << car.session.LastFrame;
    EXPECT_FALSE(grid.text(2, data::ValueColumn).empty());
    EXPECT_TRUE(grid.text(1, data::ValueColumn).empty());
    // The pass ended on the last row, which keeps the green highlight; the rows before lost theirs.
    const int last = grid.rows() - 1;
    EXPECT_EQ(grid.cell(last, data::MarkerColumn).color, kGreen);
    for (int row = 1; row < last; ++row)
        EXPECT_EQ(grid.cell(row, data::MarkerColumn).color, kBlack) << row;
    EXPECT_FALSE(car.session.Busy);
    EXPECT_TRUE(car.screen.tmrKeepAliveEnhance.enabled());
    EXPECT_FALSE(car.screen.tmrKeepAlive.enabled());
}

TEST(NissanLiveData, SwitchRowAsksForItsRegisterAndShowsItsBit)
{
    NissanCar car;
    ASSERT_TRUE(car.connected);
    ASSERT_TRUE(car.pollOnly("1302 7"));
    car.stopAfter(1);
    RunNissanLiveData(car.session);

    EXPECT_NE(car.session.LastFrame.find("052213020401"), std::string::npos) << car.session.LastFrame;
    const std::string& reply = car.session.LastResponse;
    ASSERT_FALSE(reply.empty());
    // "LL 62 13 02" and the register: its top bit is the brake switch.
    ASSERT_EQ(reply.substr(2, 6), "621302");
    const int registerBits = std::stoi(reply.substr(8, 2), nullptr, 16);
    const GridModel& grid = car.screen.GridMode1;
    EXPECT_EQ(grid.text(1, data::ValueColumn), (registerBits & 0x80) ? "ON" : "OFF");
    EXPECT_TRUE(grid.text(1, data::AltValueColumn).empty());
}

TEST(NissanLiveData, SixMissesInARowEndTheSessionAfterThreeWakeUps)
{
    NissanCar car;
    ASSERT_TRUE(car.connected);
    ASSERT_TRUE(car.pollOnly("1101"));
    car.vehicle.setSilent(kEngine, true);
    const int wakeUpsBefore = car.wakeUps();

    RunNissanLiveData(car.session);

    EXPECT_EQ(car.wakeUps() - wakeUpsBefore, 3);
    ASSERT_EQ(car.shell.boxes.size(), 1u);
    EXPECT_EQ(car.shell.boxes[0].title, obd::kNoCommunication);
    EXPECT_EQ(car.shell.boxes[0].text, obd::kNoResponseFromEcu);
    EXPECT_EQ(car.shell.boxes[0].icon, MessageIcon::Exclamation);
    EXPECT_TRUE(car.session.LinkDown);
    EXPECT_FALSE(car.link.IsPortOpen());
    EXPECT_FALSE(car.screen.tmrKeepAliveEnhance.enabled());
}

TEST(NissanLiveData, RecordingRedHighlightAndEveryReplyAFrameEmptyOnesToo)
{
    NissanCar car;
    ASSERT_TRUE(car.connected);
    ASSERT_TRUE(car.pollOnly("1101"));
    QTemporaryDir dir;
    car.session.LogFileHandle =
        std::make_shared<log::LogFile>(dir.filePath("n.log").toStdString(), log::LogFile::Mode::Create);
    car.session.Logging = true;
    const long first = car.session.LogRecordNumber;

    std::vector<std::string> replies;
    long recorded = first;
    car.shell.onProcessEvents = [&] {
        if (car.session.LogRecordNumber == recorded)
            return;
        recorded = car.session.LogRecordNumber;
        replies.push_back(car.session.LastResponse);
        // Two good replies, then the unit falls silent for one more.
        if (replies.size() == 2)
            car.vehicle.setSilent(kEngine, true);
        if (replies.size() == 3)
            car.session.Busy = false;
    };
    RunNissanLiveData(car.session);

    EXPECT_EQ(car.screen.GridMode1.cell(1, data::MarkerColumn).color, kRed);
    ASSERT_EQ(car.session.LogRecordNumber - first, 3);
    for (long n = 0; n < 3; ++n)
        EXPECT_EQ(car.session.LogFileHandle->readRecord(first + n).value(), replies[static_cast<std::size_t>(n)]);
    EXPECT_EQ(replies[0].substr(2, 6), "621101");
    EXPECT_EQ(replies[2], "");
    EXPECT_EQ(car.session.SilenceCount, 1);
}

TEST(NissanKeepAlive, GoodAnswerClearsTheCountWithTheLampBackToBlack)
{
    NissanCar car;
    ASSERT_TRUE(car.connected);
    car.session.SilenceCount = 2;
    NissanKeepAliveTick(car.session);
    EXPECT_EQ(car.session.SilenceCount, 0);
    EXPECT_NE(car.session.LastFrame.find("052211000401"), std::string::npos);
    EXPECT_EQ(car.screen.StatusBar1.lamp(3), Lamp::Black);
}

TEST(NissanKeepAlive, WakeUpsFromTheThirdMissAndTheEndAtFourteen)
{
    NissanCar car;
    ASSERT_TRUE(car.connected);
    car.vehicle.setSilent(kEngine, true);
    const int wakeUpsBefore = car.wakeUps();

    // From the third miss every tick first tries a wake-up, which fails and counts as well.
    for (int count : {1, 2, 3, 5, 7, 9, 11, 13}) {
        NissanKeepAliveTick(car.session);
        EXPECT_EQ(car.session.SilenceCount, count);
    }
    EXPECT_EQ(car.wakeUps() - wakeUpsBefore, 5);
    EXPECT_TRUE(car.shell.boxes.empty());
    EXPECT_TRUE(car.screen.tmrKeepAliveEnhance.enabled());

    NissanKeepAliveTick(car.session);
    ASSERT_EQ(car.shell.boxes.size(), 1u);
    EXPECT_EQ(car.shell.boxes[0].text, obd::kNoResponseFromEcu);
    EXPECT_EQ(car.shell.boxes[0].title, obd::kNoCommunication);
    EXPECT_TRUE(car.session.LinkDown);
    EXPECT_FALSE(car.screen.tmrKeepAliveEnhance.enabled());
}

} // namespace
} // namespace kvx::enhanced
