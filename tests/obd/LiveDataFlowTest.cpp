#include "data/GridLayouts.h"
#include "link/ReplyText.h"
#include "log/LogFile.h"
#include "obd/Connection.h"
#include "obd/KeepAlive.h"
#include "obd/LiveData.h"
#include "support/CoreVehicle.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace kvx::obd {
namespace {

TEST(LiveData, RowsFillFromTheUnitInUseOnlyAndOnlyItsMessagesAreLogged)
{
    test::CoreVehicle car;
    ASSERT_TRUE(ConnectEcu(car.session));
    car.session.EcuAddress = "10";
    ASSERT_TRUE(car.pollOnly("0D")); // the vehicle speed: both units answer it

    QTemporaryDir dir;
    car.session.LogFileHandle = std::make_shared<log::LogFile>(dir.filePath("t.log").toStdString(), log::LogFile::Mode::Create);
    car.session.Logging = true;
    const long firstRecord = car.session.LogRecordNumber;

    car.shell.onProcessEvents = [&] {
        if (car.session.LogRecordNumber - firstRecord == 3)
            StopLiveData(car.session);
    };
    StartLiveData(car.session);
    EXPECT_FALSE(car.session.Busy);
    EXPECT_TRUE(car.screen.tmrKeepAlive.enabled());

    const auto messages = link::splitReply(car.session.LastResponse);
    ASSERT_EQ(messages.size(), 2u);
    const std::string& fromEngine = link::sourceText(messages[0]) == "10" ? messages[0] : messages[1];
    EXPECT_EQ(car.screen.GridMode1.text(1, data::ValueColumn), car.link.FormatLiveValue(fromEngine, 1));
    EXPECT_EQ(car.screen.GridMode1.text(1, data::AltValueColumn), car.link.FormatLiveValue(fromEngine, 2));

    EXPECT_EQ(car.session.LogRecordNumber - firstRecord, 3);
    for (long n = firstRecord; n < car.session.LogRecordNumber; ++n)
        EXPECT_EQ(car.session.LogFileHandle->readRecord(n).value().substr(0, 6), "486B10");
}

TEST(LiveData, ThirdSilentReplyReconnectsAndTheNextAnswerClearsTheCount)
{
    test::CoreVehicle car;
    ASSERT_TRUE(ConnectEcu(car.session));
    ASSERT_TRUE(car.pollOnly("0C"));
    car.outwaitSession();
    // Each pass over the one row yields after the row and again after the pass.
    std::vector<int> counts;
    car.shell.onProcessEvents = [&] {
        counts.push_back(car.session.SilenceCount);
        if (counts.size() == 10)
            StopLiveData(car.session);
    };
    StartLiveData(car.session);
    EXPECT_EQ(counts, (std::vector<int>{1, 1, 2, 2, 3, 3, 0, 0, 0, 0}));
    EXPECT_EQ(car.countStatus(kReconnecting), 1);
    EXPECT_TRUE(car.shell.boxes.empty());
}

TEST(LiveData, SixthSilentReplyEndsLiveDataWithABox)
{
    sim::VehicleConfig config;
    for (int n = 1; n < 10; ++n)
        config.faults.wakeUps[n] = sim::Fault::Silence;
    test::CoreVehicle car(config);
    ASSERT_TRUE(ConnectEcu(car.session));
    ASSERT_TRUE(car.pollOnly("0C"));
    car.outwaitSession();
    StartLiveData(car.session);
    EXPECT_EQ(car.session.SilenceCount, 6);
    EXPECT_EQ(car.countStatus(kReconnecting), 3);
    ASSERT_EQ(car.shell.boxes.size(), 1u);
    EXPECT_EQ(car.shell.boxes[0].title, kNoCommunication);
    EXPECT_EQ(car.shell.boxes[0].text, kNoResponseFromEcu);
    EXPECT_FALSE(car.session.Busy);
    EXPECT_TRUE(car.screen.tmrKeepAlive.enabled());
}

TEST(LiveData, TabChangeEndsThePassAndUntickingARowBlanksItsValue)
{
    test::CoreVehicle car;
    ASSERT_TRUE(ConnectEcu(car.session));
    car.shell.onProcessEvents = [&] { car.screen.TabStrip1.selectCaption("INFO"); };
    StartLiveData(car.session);
    // The pass ends at the next row; the loop yields once more as it ends.
    EXPECT_EQ(car.shell.pumps, 2);
    EXPECT_FALSE(car.session.Busy);

    GridModel& grid = car.screen.GridMode1;
    grid.setText(1, data::ValueColumn, "800");
    ToggleLiveDataRow(car.session, 1);
    EXPECT_EQ(grid.text(1, data::MarkerColumn), data::kEmptyMarker);
    EXPECT_EQ(grid.text(1, data::ValueColumn), "");
}

TEST(LiveData, AllRowsUntickedSendsNothingUntilStopped)
{
    test::CoreVehicle car;
    ASSERT_TRUE(ConnectEcu(car.session));
    car.untickAll();
    const std::string before = car.session.LastFrame;
    const int rows = car.screen.GridMode1.rows() - 1;
    car.screen.TabStrip1.selectCaption("LIVE DATA");
    car.shell.onProcessEvents = [&] {
        if (car.shell.pumps >= rows * 3)
            StopLiveData(car.session);
    };
    StartLiveData(car.session);
    EXPECT_EQ(car.session.LastFrame, before);
    // A yield after every row and after every pass; the third pass ends at its next row.
    EXPECT_EQ(car.shell.pumps, rows * 3 + 1);
}

} // namespace
} // namespace kvx::obd
