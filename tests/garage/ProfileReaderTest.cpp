#include "garage/ProfileReader.h"
#include "garage/ProfileValues.h"
#include "link/decode/TroubleCodes.h"

#include <gtest/gtest.h>

namespace kvx::garage {
namespace {

using sim::ValueSource;

// Every key a profile can hold, each with a value other than its default.
const char* const kEveryKey = R"({
  "comment": "A test car holding every key",
  "slowInit": "kwp2000",
  "isoKeyBytes": "94 94",
  "fastInit": false,
  "p2Ms": 45,
  "units": [
    {
      "address": "1A",
      "replyRank": 2,
      "pids": {
        "0C": {"drive": true},
        "0D": {"constant": "3C"},
        "05": {"ramp": {"from": "28", "to": "7B", "seconds": 90.5}}
      },
      "freezeFrame": {"code": "P0A80", "pids": ["0C", "05"], "atSeconds": 12},
      "stored": ["P0301", "C0035", "B1A00", "U0100"],
      "pending": ["P3FFF"],
      "o2Tests": [{"tid": "01", "sensor": "03", "value": "5A", "min": "10", "max": "F0"}],
      "monitorTests": [{"tid": "02", "cid": "81", "value": "03 10", "limit": "0280"}],
      "vin": "KVX1E6TS4R0000913",
      "refusals": {"04": "22", "09": "11"},
      "pendingFirst": ["03", "07"],
      "kwpKeyBytes": "EA 8F",
      "kwpPhysicalKb1": "E5",
      "nissanItems": {"1101": {"constant": "0B B8"}},
      "toyotaRanges": ["B0", "E0"]
    },
    {"address": "18", "nissanItems": {}}
  ]
})";

sim::VehicleProfile everyKeyExpected()
{
    sim::VehicleProfile car;
    car.name = "every";
    car.comment = "A test car holding every key";
    car.slowInit = sim::VehicleProfile::SlowInit::Kwp2000;
    car.isoKeyByte = 0x94;
    car.fastInit = false;
    car.p2 = link::ms(45);
    sim::UnitProfile u;
    u.address = 0x1A;
    u.replyRank = 2;
    u.pids[0x0C] = {};
    u.pids[0x0D] = {ValueSource::Kind::Constant, {0x3C}, {}, 0};
    u.pids[0x05] = {ValueSource::Kind::Ramp, {0x28}, {0x7B}, 90.5};
    u.freezeFrame = sim::FreezeFrameProfile{0x0A80, {0x0C, 0x05}, 12};
    u.stored = {0x0301, 0x4035, 0x9A00, 0xC100};
    u.pending = {0x3FFF};
    u.o2Tests = {{0x01, 0x03, 0x5A, 0x10, 0xF0}};
    u.monitorTests = {{0x02, 0x81, 0x0310, 0x0280}};
    u.vin = "KVX1E6TS4R0000913";
    u.refusals = {{0x04, 0x22}, {0x09, 0x11}};
    u.pendingFirst = {0x03, 0x07};
    u.kwpKb1 = 0xEA;
    u.kwpKb2 = 0x8F;
    u.kwpKb1Physical = 0xE5;
    u.nissanItems = std::map<std::uint16_t, ValueSource>{{0x1101, {ValueSource::Kind::Constant, {0x0B, 0xB8}, {}, 0}}};
    u.toyotaRanges = {0xB0, 0xE0};
    sim::UnitProfile second;
    second.address = 0x18;
    second.nissanItems.emplace();
    car.units = {u, second};
    return car;
}

TEST(ProfileReader, EveryKeyReachesItsField)
{
    EXPECT_EQ(readVehicleProfile(kEveryKey, "every.json", "every"), everyKeyExpected());
    // A unit that names only its address keeps every default; no Nissan service at all differs
    // from one without items.
    const auto minimal = readVehicleProfile(R"({"comment": "x", "units": [{"address": "10"}]})", "m.json", "m");
    sim::UnitProfile plain;
    plain.address = 0x10;
    EXPECT_EQ(minimal.units, std::vector<sim::UnitProfile>{plain});
    EXPECT_FALSE(minimal.units[0].nissanItems.has_value());
}

// Replaces the first `from` of the every-key text with `to`.
std::string edited(const std::string& from, const std::string& to)
{
    std::string text = kEveryKey;
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

TEST(ProfileReader, RefusalsNameTheFileTheKeyPathAndWhatWasExpected)
{
    struct Case {
        std::string json;
        const char* where; // the file and key path the message opens with
        const char* expected;
    };
    const Case cases[] = {
        // Unknown keys, at the top, in a unit and in a value source.
        {edited("\"p2Ms\"", "\"p2\""), "car.json: p2: ", "unknown key"},
        {edited("\"replyRank\"", "\"replyrank\""), "car.json: units[0].replyrank: ", "known here: address, replyRank"},
        {edited("\"drive\": true", "\"drive\": true, \"scale\": 2"), "units[0].pids.0C.scale: ", "unknown key"},
        // Bad hex in values and in keys.
        {edited("\"3C\"", "\"3G\""), "car.json: units[0].pids.0D.constant: ", "hex bytes"},
        {edited("\"to\": \"7B\"", "\"to\": \"7B 00\""), "units[0].pids.05.ramp.to: ", "as many bytes as \"from\""},
        {edited("\"0C\": {", "\"C\": {"), "units[0].pids.C: ", "two hex digits"},
        {edited("\"0C\": {", "\"20\": {"), "units[0].pids.20: ", "support bitmaps"},
        {edited("\"0280\"", "\"280\""), "units[0].monitorTests[0].limit: ", "two hex bytes"},
        {edited("\"1101\"", "\"11011\""), "units[0].nissanItems.11011: ", "four hex digits"},
        // Trouble-code text: an unknown letter, a second digit above 3, a short code.
        {edited("\"C0035\"", "\"X0035\""), "car.json: units[0].stored[1]: ", "a trouble code such as"},
        {edited("\"P3FFF\"", "\"P4FFF\""), "units[0].pending[0]: ", "not \"P4FFF\""},
        {edited("\"P0A80\"", "\"P0A8\""), "units[0].freezeFrame.code: ", "a trouble code"},
        // Wrong types and values out of range.
        {edited("\"fastInit\": false", "\"fastInit\": \"no\""), "car.json: fastInit: ", "true or false, not \"no\""},
        {edited("\"p2Ms\": 45", "\"p2Ms\": 60"), "car.json: p2Ms: ", "from 25 to 50, not 60"},
        {edited("\"replyRank\": 2", "\"replyRank\": 2.5"), "units[0].replyRank: ", "a whole number"},
        {edited("\"pendingFirst\": [\"03\", \"07\"]", "\"pendingFirst\": \"03\""), "units[0].pendingFirst: ",
         "a list [...], not \"03\""},
        {edited("\"isoKeyBytes\": \"94 94\"", "\"isoKeyBytes\": \"94 08\""), "isoKeyBytes: ", "\"08 08\" or \"94 94\""},
        {edited("\"toyotaRanges\": [\"B0\"", "\"toyotaRanges\": [\"A0\""), "units[0].toyotaRanges[0]: ", "\"B0\", \"C0\""},
        {edited("KVX1E6TS4R0000913", "KVX1E6TS4R000091"), "units[0].vin: ", "17 capital letters"},
        {edited("\"0C\", \"05\"]", "\"0C\", \"0E\"]"), "units[0].freezeFrame.pids[1]: ", "0E is not among them"},
        {edited("\"address\": \"18\"", "\"address\": \"1A\""), "units[1].address: ", "no other unit has"},
        // The comment comes first, and the text must be JSON at all.
        {edited("\"comment\": \"A test car holding every key\",", ""), "car.json: comment: ", "first in the file"},
        {edited("\"units\": [", "\"units\": [,"), "car.json: not JSON: ", "line 7"},
    };
    for (const Case& c : cases) {
        try {
            readVehicleProfile(QByteArray::fromStdString(c.json), "car.json", "car");
            ADD_FAILURE() << "taken: " << c.where;
        } catch (const ProfileError& e) {
            const std::string message = e.what();
            EXPECT_EQ(message.rfind("car.json: ", 0), 0u) << message;
            EXPECT_NE(message.find(c.where), std::string::npos) << message;
            EXPECT_NE(message.find(c.expected), std::string::npos) << message;
        }
    }
}

TEST(ProfileReader, TroubleCodeTextReadsBackWhatTheDecoderWrites)
{
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
        const std::string text = link::decode::troubleCode(std::uint8_t(code >> 8), std::uint8_t(code));
        ASSERT_EQ(troubleCodeFromText(QString::fromStdString(text)), std::optional<sim::TroubleCode>(code)) << text;
    }
    EXPECT_EQ(troubleCodeFromText("U0100"), std::optional<sim::TroubleCode>(0xC100));
    EXPECT_EQ(troubleCodeFromText("B1A00"), std::optional<sim::TroubleCode>(0x9A00));
}

} // namespace
} // namespace kvx::garage
