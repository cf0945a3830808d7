#include "data/GridLayouts.h"
#include "enhanced/Modules.h"
#include "enhanced/NissanKeepAlive.h"
#include "obd/Connection.h"
#include "obd/InfoPids.h"
#include "obd/KeepAlive.h"
#include "obd/TextColumns.h"
#include "support/CoreVehicle.h"
#include "support/UnitAnswers.h"

#include <gtest/gtest.h>

namespace kvx::obd {
namespace {

// Key byte 1 naming addresses and a separate length byte as the only header form.
constexpr std::uint8_t kLengthByteKb1 = 0xEA;

// The engine unit alone, refusing every request while `refusing` is set.
class RefusingEngine final : public sim::EcuModel {
public:
    RefusingEngine(link::Clock& clock, std::uint64_t seed, const bool& refusing) : inner_(test::BuiltInEngine(clock, seed)), refusing_(refusing) {}
    std::uint8_t address() const override { return inner_->address(); }
    std::vector<link::Bytes> answer(const sim::Request& r) override
    {
        if (refusing_)
            return {sim::negative(r.payload.front(), 0x22)};
        return inner_->answer(r);
    }

private:
    std::unique_ptr<sim::EcuModel> inner_;
    const bool& refusing_;
};

sim::VehicleConfig lengthByteEngine(const bool& refusing)
{
    sim::VehicleConfig config;
    config.kwpKb1 = kLengthByteKb1;
    config.units = {[&refusing](link::Clock& c, std::uint64_t seed) {
        return std::make_unique<RefusingEngine>(c, seed, refusing);
    }};
    return config;
}

std::vector<std::string> gridPids(const test::CoreVehicle& car)
{
    std::vector<std::string> pids;
    for (int row = 1; row < car.screen.GridMode1.rows(); ++row)
        pids.push_back(car.screen.GridMode1.text(row, data::PidColumn));
    return pids;
}

void expectNotConnected(test::CoreVehicle& car)
{
    EXPECT_TRUE(car.session.LinkDown);
    EXPECT_FALSE(car.link.IsPortOpen()) << "the cable stays locked";
    EXPECT_TRUE(car.screen.control("Connect").enabled());
    EXPECT_FALSE(car.screen.control("Disconnect").enabled());
    EXPECT_TRUE(car.screen.control("Setting").enabled());
}

TEST(FailedWakeUp, EveryModuleFreesThePortAndTheNextConnectWorks)
{
    const std::pair<int, int> tries[] = {{ModuleGeneric, link::Iso9141Slow},
                                         {ModuleGeneric, link::Kwp2000Slow},
                                         {ModuleGeneric, link::Kwp2000Fast},
                                         {ModuleNissanEcu, link::Kwp2000Fast}};
    for (const auto& [module, protocol] : tries) {
        sim::VehicleConfig config = test::silentWakeUps({0});
        if (protocol == link::Kwp2000Slow)
            config.slowInit = link::LineKind::Kwp;
        test::CoreVehicle car(config, protocol);
        EXPECT_FALSE(enhanced::ConnectModule(car.session, module)) << module << "/" << protocol;
        EXPECT_EQ(car.screen.StatusBar1.text(1), kInitFailed);
        expectNotConnected(car);
        EXPECT_TRUE(enhanced::ConnectModule(car.session, module)) << module << "/" << protocol;
        EXPECT_TRUE(car.link.IsPortOpen());
    }
}

TEST(FailedWakeUp, ARateNoInterfaceRunsAtIsRefusedInPlainWords)
{
    for (int rate : {999999999, 0, -1}) {
        test::CoreVehicle car;
        car.session.settings.BaudRate = rate;
        EXPECT_FALSE(ConnectEcu(car.session));
        ASSERT_EQ(car.shell.boxes.size(), 1u) << rate;
        EXPECT_NE(car.shell.boxes[0].text.find("baud rate " + std::to_string(rate)), std::string::npos)
            << car.shell.boxes[0].text;
        expectNotConnected(car);
        EXPECT_TRUE(car.vehicle.record().events.empty()) << "nothing reached the line";

        car.session.settings.BaudRate = 10400;
        EXPECT_TRUE(ConnectEcu(car.session)) << rate;
    }
}

TEST(LengthByteFrames, AKwpRefusalIsANegativeResponse)
{
    for (int protocol : {link::Kwp2000Slow, link::Kwp2000Fast}) {
        const bool refusing = true;
        sim::VehicleConfig config = lengthByteEngine(refusing);
        config.slowInit = link::LineKind::Kwp;
        test::CoreVehicle car(config, protocol);
        EXPECT_FALSE(ConnectEcu(car.session));
        ASSERT_EQ(car.shell.boxes.size(), 1u) << protocol;
        EXPECT_EQ(car.shell.boxes[0].title, kFailedCommunication);
        EXPECT_EQ(car.shell.boxes[0].text, kNegativeResponseText);
        EXPECT_EQ(car.session.LastResponse.substr(0, 2), "80") << "the frame as it came, with its length byte";
        expectNotConnected(car);
    }
}

TEST(LengthByteFrames, DiscoveryListsWhatAnOrdinaryCarLists)
{
    test::CoreVehicle ordinary({}, link::Kwp2000Fast);
    sim::VehicleConfig config;
    config.kwpKb1 = kLengthByteKb1;
    test::CoreVehicle lengthByte(config, link::Kwp2000Fast);
    ASSERT_TRUE(ConnectEcu(ordinary.session));
    ASSERT_TRUE(ConnectEcu(lengthByte.session)) << (lengthByte.shell.boxes.empty() ? "" : lengthByte.shell.boxes[0].text);
    EXPECT_EQ(lengthByte.session.LastResponse.substr(0, 2), "80");
    EXPECT_EQ(gridPids(lengthByte), gridPids(ordinary));
    EXPECT_EQ(lengthByte.screen.cmbModule.items(), ordinary.screen.cmbModule.items());
}

TEST(LengthByteFrames, KeepAliveRefusalsCountAsSilence)
{
    bool refusing = false;
    test::CoreVehicle car(lengthByteEngine(refusing), link::Kwp2000Fast);
    ASSERT_TRUE(ConnectEcu(car.session));
    KeepAliveTick(car.session);
    EXPECT_EQ(car.session.SilenceCount, 0);
    refusing = true;
    KeepAliveTick(car.session);
    KeepAliveTick(car.session);
    EXPECT_EQ(car.session.SilenceCount, 2);
    EXPECT_EQ(car.session.LastRaw.substr(0, 2), "80");
    refusing = false;
    KeepAliveTick(car.session);
    EXPECT_EQ(car.session.SilenceCount, 0);

    // The rule follows the protocol setting: once ISO 9141-2 is applied in the settings window
    // mid-session, a refusal is an answer like any other.
    car.session.settings.ProtocolNumber = link::Iso9141Slow;
    refusing = true;
    KeepAliveTick(car.session);
    EXPECT_EQ(car.session.SilenceCount, 0);
}

TEST(LengthByteFrames, NissanUnitsWithFullHeadersStayAlive)
{
    sim::VehicleConfig config;
    config.kwpKb1 = kLengthByteKb1;
    test::CoreVehicle car(config);
    ASSERT_TRUE(enhanced::ConnectModule(car.session, ModuleNissanEcu));
    EXPECT_EQ(car.screen.GridMode1.text(1, data::PidColumn), "1101");
    car.session.SilenceCount = 2;
    enhanced::NissanKeepAliveTick(car.session);
    EXPECT_EQ(car.session.LastRaw.substr(2, 2), "62");
    EXPECT_EQ(car.session.SilenceCount, 0);
}

TEST(LineNoise, StrayBytesBeforeTheRepliesLoseNothing)
{
    // C1 before a frame starting 87 F1 10 49 reads as a whole frame of its own.
    sim::VehicleConfig config;
    config.faults.rate = 1.0;
    config.faults.kinds = {sim::Fault::Noise};
    config.faults.noise = {0xD7, 0xC1};
    test::CoreVehicle car(config, link::Kwp2000Fast);
    ASSERT_TRUE(ConnectEcu(car.session));
    ReadVehicleId(car.session);
    EXPECT_EQ(car.screen.txtInfo.text(), std::string("VIN: ") + sim::builtInVehicle().units.front().vin + kLineBreak);
}

} // namespace
} // namespace kvx::obd
