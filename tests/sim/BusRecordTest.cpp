#include "BusTester.h"

#include <gtest/gtest.h>

namespace kvx::sim::test {
namespace {

TEST(BusRecord, HoursOfPollingKeepTheNewestEntriesAndCountTheRest)
{
    // A tester polling for long, as one does through `kvx sim --pty` for hours; the fault plan
    // still counts every request.
    constexpr int kPolls = 5000;
    VehicleConfig config;
    config.faults.requests[kPolls] = Fault::Silence;
    BusTester t(config);
    ASSERT_EQ(t.slowInit().size(), 5u);
    for (int n = 0; n < kPolls; ++n)
        ASSERT_FALSE(t.iso({0x01, 0x0C}).empty()) << n;
    EXPECT_TRUE(t.iso({0x01, 0x0C}).empty()) << "the request numbered past the kept ones met its fault";

    const BusRecord& record = t.vehicle.record();
    EXPECT_EQ(record.events.size(), BusRecord::kEventsKept);
    EXPECT_GT(record.events.dropped(), 0u);
    EXPECT_EQ(record.requests.total(), kPolls + 1u);
    EXPECT_EQ(record.requests.size(), BusRecord::kOthersKept);
    EXPECT_EQ(record.framesSent.size(), BusRecord::kOthersKept);
    // The newest are kept: the last request's echo, the last reply before it.
    EXPECT_EQ(record.events.back().origin, link::TraceOrigin::Echo);
    EXPECT_EQ(record.requests.number(kPolls).fault, Fault::Silence);
    const Bytes& lastFrame = record.framesSent.back();
    EXPECT_EQ(Bytes(lastFrame.begin(), lastFrame.begin() + 5), (Bytes{0x48, 0x6B, 0x10, 0x41, 0x0C}));
}

} // namespace
} // namespace kvx::sim::test
