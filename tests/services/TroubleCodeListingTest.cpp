#include "obd/TroubleCodeLines.h"

#include <gtest/gtest.h>

#include <map>

namespace kvx::obd {
namespace {

TroubleCodeListing MakeListing()
{
    static const std::map<std::string, std::string> known{
        {"P0301", "Cylinder 1 Misfire Detected"}, {"P0420", "Catalyst Below Threshold"}, {"P0171", "Lean Bank 1"},
        {"P0300", "Random Misfire"}, {"P0135", "O2 Heater B1S1"}, {"P0442", "EVAP Small Leak"}};
    return TroubleCodeListing([](const std::string& code) {
        auto it = known.find(code);
        return it == known.end() ? std::string() : it->second;
    });
}

int CountLines(const std::string& text)
{
    int lines = 0;
    for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at + 2))
        ++lines;
    return lines;
}

TEST(TroubleCodeListing, ThreeCodesOnlyWhenTheListIsExactlyFifteenCharacters)
{
    EXPECT_EQ(CodesOfFrame("P0301P0420P0171"), (std::vector<std::string>{"P0301", "P0420", "P0171"}));
    EXPECT_EQ(CodesOfFrame("P0301P0420P0171P0300"), (std::vector<std::string>{"P0301", "P0420"}));
    EXPECT_EQ(CodesOfFrame("P0301P0420P01"), (std::vector<std::string>{"P0301", "P0420"}));
    EXPECT_EQ(CodesOfFrame("P030"), std::vector<std::string>{});
}

TEST(TroubleCodeListing, SecondFrameRepeatsTheFirstFramesCodes)
{
    auto listing = MakeListing();
    const std::string first = listing.addFrame("P0301P0420P0171");
    const std::string second = listing.addFrame("P0300P0135P0442");
    EXPECT_EQ(CountLines(first), 3);
    EXPECT_EQ(CountLines(second), 6);
    EXPECT_EQ(second.substr(0, first.size()), first);
    // What the box holds after both insertions: nine lines.
    EXPECT_EQ(CountLines(first + second), 9);
    EXPECT_FALSE(listing.lastFrameEmpty());
}

TEST(TroubleCodeListing, LineLayoutAndMissingDescription)
{
    auto listing = MakeListing();
    EXPECT_EQ(listing.addFrame("P0301P1234"),
              "P0301 - Cylinder 1 Misfire Detected\r\nP1234 - No Desciption Available\r\n");
}

TEST(TroubleCodeListing, LastFrameWithoutCodesCountsAsNoResponse)
{
    auto listing = MakeListing();
    EXPECT_TRUE(listing.lastFrameEmpty());
    listing.addFrame("P0301");
    EXPECT_FALSE(listing.lastFrameEmpty());
    // The earlier codes stay in the text, yet the box still gets the no-response line.
    EXPECT_EQ(listing.addFrame(""), "P0301 - Cylinder 1 Misfire Detected\r\n");
    EXPECT_TRUE(listing.lastFrameEmpty());
}

} // namespace
} // namespace kvx::obd
