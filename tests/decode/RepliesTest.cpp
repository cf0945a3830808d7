#include "link/decode/InfoValue.h"
#include "link/decode/ServiceReply.h"
#include "link/decode/Vin.h"

#include "support/HexFrames.h"

#include <gtest/gtest.h>

using namespace kvx::link::decode;
using kvx::test::ecu;
using kvx::test::frame;

TEST(ServiceReply, ClearAnswerPositiveOrNegativeInPlainWords)
{
    EXPECT_EQ(formatServiceReply(ecu("44")), "Trouble codes cleared");
    EXPECT_EQ(formatServiceReply(ecu("7F0422")),
              "Service 04 refused: conditions not correct, stop the engine and leave the ignition on (22)");
    EXPECT_EQ(formatServiceReply(ecu("7F0411")), "Service 04 refused: service not supported (11)");
    EXPECT_EQ(formatServiceReply(ecu("7F04FE")), "Service 04 refused: unknown reason (FE)");
    EXPECT_EQ(formatServiceReply(ecu("7F04")), "Request refused (no reason given)");
    EXPECT_EQ(formatServiceReply("486B"), "");
}

TEST(InfoValue, MonitorStatusListsEachMonitor)
{
    const std::string text = formatInfoValue(ecu("410183076504"));
    EXPECT_NE(text.find("MIL (check engine lamp): on\n"), std::string::npos);
    EXPECT_NE(text.find("Confirmed trouble codes: 3\n"), std::string::npos);
    EXPECT_NE(text.find("Ignition: spark\n"), std::string::npos);
    EXPECT_NE(text.find("Misfire: supported, complete\n"), std::string::npos);
    EXPECT_NE(text.find("Catalyst: supported, complete\n"), std::string::npos);
    EXPECT_NE(text.find("Heated catalyst: not supported\n"), std::string::npos);
    EXPECT_NE(text.find("Evaporative system: supported, not complete\n"), std::string::npos);
    EXPECT_NE(text.find("EGR system: not supported\n"), std::string::npos);

    const std::string diesel = formatInfoValue(ecu("4101000F0100"));
    EXPECT_NE(diesel.find("Ignition: compression\n"), std::string::npos);
    EXPECT_NE(diesel.find("NMHC catalyst: supported, complete\n"), std::string::npos);

    const std::string drive = formatInfoValue(ecu("414100071000"));
    EXPECT_EQ(drive.find("MIL"), std::string::npos);
    EXPECT_NE(drive.find("Misfire: enabled, complete\n"), std::string::npos);
    EXPECT_NE(drive.find("Catalyst: disabled\n"), std::string::npos);
}

TEST(InfoValue, StandardAndSensorLayouts)
{
    EXPECT_EQ(formatInfoValue(ecu("411C01")), "OBD standard: OBD-II (California ARB)\n");
    EXPECT_EQ(formatInfoValue(ecu("411333")), "Bank 1: sensors 1, 2\nBank 2: sensors 1, 2\n");
    EXPECT_EQ(formatInfoValue(ecu("411D31")), "Bank 1: sensor 1\nBank 3: sensors 1, 2\n");
    EXPECT_EQ(formatInfoValue(ecu("411300")), "No oxygen sensors present\n");
    EXPECT_EQ(formatInfoValue(ecu("410D32")), "Vehicle speed: 50 km/h\n");
    EXPECT_EQ(formatInfoValue(ecu("4101830765")), "");
    EXPECT_EQ(formatInfoValue(ecu("415F00")), "");
}

TEST(Vin, MessagesAreJoinedByTheirNumber)
{
    const std::string parts[] = {ecu("490201000000" "31"), ecu("490202" "48474D43"), ecu("490203" "38323633"),
                                 ecu("490204" "33413030"), ecu("490205" "34333532")};
    const auto join = [](std::initializer_list<std::string> messages) {
        std::string out;
        for (const auto& m : messages)
            out += (out.empty() ? "" : ":") + m;
        return out;
    };
    EXPECT_EQ(formatVin(join({parts[0], parts[1], parts[2], parts[3], parts[4]})), "1HGMC82633A004352");
    EXPECT_EQ(formatVin(join({parts[3], parts[0], parts[4], parts[2], parts[1]})), "1HGMC82633A004352");
    EXPECT_EQ(formatVin(join({parts[0], parts[1], parts[3], parts[4]})), "");
    const std::string otherUnit = frame("486B18", "490202" "5A5A5A5A");
    EXPECT_EQ(formatVin(join({parts[0], otherUnit, parts[1], parts[2], parts[3], parts[4]})), "1HGMC82633A004352");
    EXPECT_EQ(formatVin(ecu("490201000000")), "");
    EXPECT_EQ(formatVin(""), "");
}
