#include "obd/Connection.h"
#include "obd/FreezeFrame.h"
#include "support/CoreVehicle.h"

#include <QString>
#include <algorithm>
#include <gtest/gtest.h>

namespace kvx::obd {
namespace {

using link::Bytes;

// An engine with oxygen sensors on four banks (PID 1D): sensor 1 of banks 1 and 3, the second
// read through PID 18, which a two-bank engine would call Bank 2 Sensor 1.
class FourBankEngine : public sim::EcuModel {
public:
    std::uint8_t address() const override { return 0x10; }
    std::vector<Bytes> answer(const sim::Request& r) override
    {
        const Bytes& p = r.payload;
        if (p.size() == 2 && p[0] == 0x01)
            return live(p[1]);
        if (p.size() == 3 && p[0] == 0x02 && p[2] == 0x00)
            return frozen(p[1]);
        return {};
    }

private:
    static std::vector<Bytes> live(std::uint8_t pid)
    {
        switch (pid) {
        case 0x00: return {{0x41, 0x00, 0x00, 0x10, 0x01, 0x08}}; // 0C, 18 and 1D
        case 0x0C: return {{0x41, 0x0C, 0x1A, 0xF8}};
        case 0x18: return {{0x41, 0x18, 0x80, 0x7C}};
        case 0x1D: return {{0x41, 0x1D, 0x11}};
        default: return {};
        }
    }
    static std::vector<Bytes> frozen(std::uint8_t pid)
    {
        switch (pid) {
        case 0x00: return {{0x42, 0x00, 0x00, 0x00, 0x10, 0x01, 0x00}};
        case 0x0C: return {{0x42, 0x0C, 0x00, 0x1A, 0xF8}};
        case 0x18: return {{0x42, 0x18, 0x00, 0x80, 0x7C}};
        default: return {};
        }
    }
};

// The unit talks ISO 9141-2, or KWP2000 with a length byte of its own in every frame.
sim::VehicleConfig fourBankCar(bool lengthByte)
{
    sim::VehicleConfig config;
    config.units = {[](link::Clock&, std::uint64_t) { return std::make_unique<FourBankEngine>(); }};
    if (lengthByte)
        config.kwpKb1 = 0xEA;
    return config;
}

struct FourBanks : ::testing::TestWithParam<bool> {
    test::CoreVehicle car{fourBankCar(GetParam()), GetParam() ? link::Kwp2000Fast : link::Iso9141Slow};
    Session& s = car.session;
    void SetUp() override { ASSERT_TRUE(ConnectEcu(s)) << (car.shell.boxes.empty() ? "" : car.shell.boxes[0].text); }
};

TEST_P(FourBanks, LiveGridAndComboListsNameTheSensorByTheDeclaredLayout)
{
    const GridModel& grid = car.screen.GridMode1;
    std::string description;
    for (int row = 1; row < grid.rows(); ++row)
        if (grid.text(row, 1) == "18")
            description = grid.text(row, 2);
    EXPECT_EQ(description, "O2 voltage / fuel trim Bank 3 Sensor 1");
    const auto& entries = car.screen.cmbPid[0].items();
    EXPECT_NE(std::find(entries.begin(), entries.end(), "18 - O2 voltage / fuel trim Bank 3 Sensor 1"), entries.end());
    EXPECT_EQ(car.screen.cmbMode5.items(), (std::vector<std::string>{"Bank 1 Sensor 1", "Bank 3 Sensor 1"}));
}

TEST_P(FourBanks, FreezeFrameKeepsTheSensorAndTheWordsOfItsValues)
{
    RequestFreezeFrame(s);
    const QString text = QString::fromStdString(car.screen.txtMode2.text());
    EXPECT_TRUE(text.contains(QString("O2 voltage / fuel trim Bank 3 Sensor 1").leftJustified(40) + "\r\n")) << text.toStdString();
    EXPECT_TRUE(text.contains(QString("0.640 V").leftJustified(20) + QString("trim -3.1 %").leftJustified(20) + "\r\n"))
        << text.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Framings, FourBanks, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "LengthByte" : "Iso9141"; });

} // namespace
} // namespace kvx::obd
