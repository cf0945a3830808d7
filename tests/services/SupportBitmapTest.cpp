#include "obd/SupportBitmap.h"

#include <gtest/gtest.h>

namespace kvx::obd {
namespace {

std::vector<int> Marked(const SupportTable& table, int column)
{
    std::vector<int> ids;
    for (int id = 0; id < Session::kPidRows; ++id)
        if (table[static_cast<std::size_t>(id)][static_cast<std::size_t>(column)])
            ids.push_back(id);
    return ids;
}

TEST(SupportBitmap, FreezeFrameAnswerWithItsFrameByte)
{
    SupportTable table{};
    // 42 00 00 | 80 00 00 01: PID 01 and PID 20 of service 02.
    ASSERT_TRUE(MarkSupportBitmap(table, "486B104200008000000100", 2));
    EXPECT_EQ(Marked(table, 1), (std::vector<int>{0x01, 0x20}));
    EXPECT_TRUE(Marked(table, 0).empty());
}

TEST(SupportBitmap, SensorTestsAnswerWithItsSensorByteAndTheLastRange)
{
    SupportTable table{};
    // 45 00 01 | C0 00 00 00: tests 01 and 02 of service 05.
    ASSERT_TRUE(MarkSupportBitmap(table, "486B10450001C000000000", 5));
    EXPECT_EQ(Marked(table, 4), (std::vector<int>{0x01, 0x02}));
    // Range E0 reaches identifier 100 (256), the last row the walk asks.
    ASSERT_TRUE(MarkSupportBitmap(table, "486B1046E00000000100", 6));
    EXPECT_EQ(Marked(table, 5), std::vector<int>{0x100});
}

TEST(SupportBitmap, NegativeOrForeignAnswersMarkNothing)
{
    SupportTable table{};
    EXPECT_FALSE(MarkSupportBitmap(table, "486B107F06001200", 6));
    EXPECT_FALSE(MarkSupportBitmap(table, "486B104100BE1FA81300", 6));
    EXPECT_FALSE(MarkSupportBitmap(table, "486B1046", 6));
    EXPECT_FALSE(MarkSupportBitmap(table, "not hex at all", 6));
    EXPECT_TRUE(Marked(table, 5).empty());
}

} // namespace
} // namespace kvx::obd
