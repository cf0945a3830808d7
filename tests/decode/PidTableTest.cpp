#include "link/decode/PidTable.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

using namespace kvx::link::decode;

TEST(PidTable, EveryPidOfTheRangeIsDecodedOrAbsentWithAReason)
{
    std::map<int, int> seen;
    for (const auto& row : pidRows()) {
        ++seen[row.pid];
        EXPECT_NE(std::string(row.description), "") << std::hex << int(row.pid);
        // The freeze-frame box gives a description 40 columns and cuts the rest.
        EXPECT_LE(std::string(row.description).size(), 40u) << row.description;
    }
    for (const auto& absent : absentPids()) {
        ++seen[absent.pid];
        EXPECT_GT(std::string(absent.reason).size(), 10u) << std::hex << int(absent.pid);
    }
    for (int pid = 0x00; pid <= 0x5F; ++pid)
        EXPECT_EQ(seen[pid], 1) << "PID " << std::hex << pid << " must be listed exactly once";
}

TEST(PidTable, ByteCountsMatchWhatTheFormulaReads)
{
    for (const auto& row : pidRows())
        EXPECT_EQ(row.bytes, bytesRead(row.form)) << std::hex << int(row.pid);
}
