#include "data/GridLayouts.h"
#include "enhanced/Modules.h"
#include "enhanced/NissanConnection.h"
#include "support/CoreVehicle.h"
#include "support/UnitAnswers.h"

#include <gtest/gtest.h>

namespace kvx::enhanced {
namespace {

constexpr std::size_t kBlock11 = 17; // the block byte 0x11 read as a decimal column

bool marked(const Session& s, std::size_t row, std::size_t block)
{
    return s.SupportedPids[row][block];
}

// Bit order and start byte are the connection tests'; a damaged or refused reply must mark nothing.
TEST(NissanSupport, DamagedRepliesMarkNothing)
{
    test::CoreVehicle v;
    for (const char* reply : {"", "06", "06621", "037F2212", "06621100ZZ"})
        MarkSupportedNissanSensors(v.session, reply);
    for (const auto& row : v.session.SupportedPids)
        for (bool bit : row)
            EXPECT_FALSE(bit);
}

// The Nissan engine unit, answering the first support request with a single bitmap byte.
class ShortBitmapEngine final : public sim::EcuModel {
public:
    ShortBitmapEngine(link::Clock& clock, std::uint64_t seed) : inner_(test::BuiltInEngine(clock, seed)) {}
    std::uint8_t address() const override { return inner_->address(); }
    std::uint8_t kwpKb1Physical() const override { return inner_->kwpKb1Physical(); }
    std::vector<link::Bytes> answer(const sim::Request& r) override
    {
        if (r.payload == link::Bytes{0x22, 0x11, 0x00, 0x04, 0x01})
            return {{0x62, 0x11, 0x00, 0x80}};
        return inner_->answer(r);
    }

private:
    std::unique_ptr<sim::EcuModel> inner_;
};

TEST(NissanSupport, AShortReplyMarksOnlyItsOwnBitmapByte)
{
    sim::VehicleConfig config;
    config.units = {[](link::Clock& c, std::uint64_t seed) { return std::make_unique<ShortBitmapEngine>(c, seed); }};
    test::CoreVehicle car(config);
    ASSERT_TRUE(ConnectModule(car.session, ModuleNissanEcu));
    EXPECT_EQ(car.session.LastRaw.substr(0, 4), "0762") << "the last support reply is a whole one";
    std::vector<std::size_t> rows;
    for (std::size_t row = 1; row < 32; ++row)
        if (marked(car.session, row, kBlock11))
            rows.push_back(row);
    EXPECT_EQ(rows, std::vector<std::size_t>{1}) << "the reply 04 62 11 00 80 names 1101 alone";
    EXPECT_EQ(car.screen.GridMode1.text(1, data::PidColumn), "1101");
    EXPECT_NE(car.screen.GridMode1.text(2, data::PidColumn).substr(0, 3), "110");
}

TEST(NissanSensors, RangeMarkersAreSkippedAndEveryOtherItemOfBlocks11To14Listed)
{
    test::CoreVehicle v;
    v.session.ModuleIndex = ModuleNissanEcu;
    for (std::size_t row : {1u, 32u, 64u, 96u})
        v.session.SupportedPids[row][kBlock11] = true;
    v.session.SupportedPids[3][18] = true;
    // The last block: items the decoder has no name for are still listed, to be read raw.
    v.session.SupportedPids[2][20] = true;
    // An item outside the listed rows and blocks is ignored.
    v.session.SupportedPids[97][kBlock11] = true;
    v.session.SupportedPids[5][21] = true;

    AddNissanSensors(v.session);
    const GridModel& grid = v.screen.GridMode1;
    ASSERT_EQ(grid.rows(), 5);
    EXPECT_EQ(grid.text(1, data::PidColumn), "1101");
    EXPECT_EQ(grid.text(2, data::PidColumn), "1160");
    EXPECT_EQ(grid.text(3, data::PidColumn), "1203");
    EXPECT_EQ(grid.text(4, data::PidColumn), "1402");
    EXPECT_EQ(grid.text(3, data::MarkerColumn), data::kTickedMarker);
    EXPECT_EQ(grid.cell(3, data::MarkerColumn).fontName, data::kMarkerFont);
    EXPECT_EQ(v.screen.StatusBar1.text(1), "ADDING SENSORS 4");
}

} // namespace
} // namespace kvx::enhanced
