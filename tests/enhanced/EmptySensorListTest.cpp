#include "enhanced/Modules.h"
#include "obd/LiveData.h"
#include "support/CoreVehicle.h"
#include "support/UnitAnswers.h"
#include "support/Watchdog.h"

#include <gtest/gtest.h>

namespace kvx::enhanced {
namespace {

// A unit of each module that has nothing to offer: every support request is answered with no
// bit set, so the live-data grid holds its header row only.
struct EmptyUnit {
    int module;
    std::vector<test::Answer> answers;
    bool withGearbox;
};

TEST(EmptySensorList, LiveDataOnAHeaderOnlyGridHonoursStopAndAnotherTab)
{
    const EmptyUnit units[] = {
        {ModuleGeneric, {{"0100", {"410000000000"}}}, false},
        {ModuleNissanEcu,
         {{"2211", {"62110000000000"}}, {"2212", {"62120000000000"}}, {"2213", {"62130000000000"}}},
         true},
        {ModuleToyota, {{"01B0", {"41B000000000"}}, {"01C0", {"41C000000000"}}, {"01E0", {"41E000000000"}}}, true},
    };
    for (const EmptyUnit& unit : units) {
        SCOPED_TRACE(unit.module);
        test::CoreVehicle car(test::EngineAnswering(unit.answers, unit.withGearbox));
        ASSERT_TRUE(ConnectModule(car.session, unit.module));
        ASSERT_EQ(car.screen.GridMode1.rows(), 1);
        const bool nissan = unit.module == ModuleNissanEcu;
        const TimerModel& keepAlive = nissan ? car.screen.tmrKeepAliveEnhance : car.screen.tmrKeepAlive;

        const test::Watchdog watchdog("live data on a header-only grid");
        car.shell.onProcessEvents = [&] { obd::StopLiveData(car.session); };
        StartModuleLiveData(car.session);
        EXPECT_FALSE(car.session.Busy);
        EXPECT_TRUE(keepAlive.enabled());

        car.shell.onProcessEvents = [&] { car.screen.TabStrip1.select(1); };
        StartModuleLiveData(car.session);
        EXPECT_NE(car.screen.TabStrip1.selectedCaption(), obd::kLiveDataCaption);
        EXPECT_FALSE(car.session.Busy);
        EXPECT_TRUE(keepAlive.enabled());
    }
}

} // namespace
} // namespace kvx::enhanced
