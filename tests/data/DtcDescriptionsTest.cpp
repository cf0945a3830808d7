#include "app/StartUp.h"
#include "data/DtcDescriptions.h"
#include "support/OfflineSession.h"
#include "support/RecordingShell.h"
#include "support/Watchdog.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <sys/stat.h>
#include <string>
#include <utility>
#include <vector>

namespace kvx::data {
namespace {

// Writes a description file into a fresh folder and loads it as the window does at start-up.
class DtcFile : public ::testing::Test {
protected:
    int load(const std::string& text)
    {
        std::ofstream(folder() + "/" + kDtcFileName, std::ios::binary) << text;
        return LoadDtcDescriptions(folder(), table, shell, file);
    }
    std::string folder() const { return dir.path().toStdString(); }
    void expectErrorBox() const
    {
        ASSERT_EQ(shell.boxes.size(), 1u);
        EXPECT_EQ(shell.boxes[0].title, "DTC ERROR");
        EXPECT_EQ(shell.boxes[0].icon, MessageIcon::Critical);
        EXPECT_FALSE(shell.boxes[0].text.empty());
    }

    QTemporaryDir dir;
    std::vector<std::string> table;
    std::ifstream file;
    test::RecordingShell shell;
};

TEST_F(DtcFile, EmptyFileLoadsNothingAndSaysNothing)
{
    EXPECT_EQ(load(""), 0);
    EXPECT_TRUE(shell.boxes.empty());
    EXPECT_EQ(table.size(), static_cast<std::size_t>(kDtcTableSize));
}

TEST_F(DtcFile, DescriptionStartsAtPositionTwelveWhateverTheSeparatorAndLetterCase)
{
    EXPECT_EQ(load("p0420      Catalyst System Efficiency Below Threshold Bank 1\n"
                   "P0000--==--No trouble code\n"
                   "  P4000      Highest number\n"),
              3);
    EXPECT_TRUE(shell.boxes.empty());
    EXPECT_EQ(table[420], "Catalyst System Efficiency Below Threshold Bank 1");
    EXPECT_EQ(table[0], "No trouble code");
    EXPECT_EQ(table[4000], "Highest number");
    EXPECT_EQ(shell.pumps, 3) << "the window is pumped once per stored record";
    EXPECT_TRUE(file.is_open()) << "a normal end leaves the file in use";
}

TEST_F(DtcFile, FirstDescriptionOfANumberWinsAndOtherLettersAreSkipped)
{
    EXPECT_EQ(load("P0300      Random/Multiple Cylinder Misfire Detected\n"
                   "P0300      Later text for the same code\n"
                   "C0035      A chassis title\n"
                   "P0035      Turbo/Super Charger Bypass Valve Control Circuit High\n"),
              2);
    EXPECT_TRUE(shell.boxes.empty());
    EXPECT_EQ(table[300], "Random/Multiple Cylinder Misfire Detected");
    EXPECT_EQ(DtcDescription(table, "C0035"), "Turbo/Super Charger Bypass Valve Control Circuit High");
}

TEST_F(DtcFile, ShortFieldCountsEmptyAndLeavesItsNumberOpen)
{
    EXPECT_EQ(load("P0171\nP0171      System Too Lean (Bank 1)\nP0172 x\n"), 3);
    EXPECT_TRUE(shell.boxes.empty());
    EXPECT_EQ(table[171], "System Too Lean (Bank 1)");
    EXPECT_EQ(table[172], "");
}

TEST_F(DtcFile, QuotedFieldKeepsItsCommasAndAWindowsEditorsFileIsRead)
{
    EXPECT_EQ(load("\xEF\xBB\xBF\"P0100      Mass Air Flow, Circuit, Bank 1\"\r\n"
                   "P0101      Range/Performance\r\n"),
              2);
    EXPECT_TRUE(shell.boxes.empty());
    EXPECT_EQ(table[100], "Mass Air Flow, Circuit, Bank 1");
    EXPECT_EQ(table[101], "Range/Performance");
}

// Whatever is skipped last, the read after it finds the end of the file: the box is shown though
// every description was stored.
TEST_F(DtcFile, SkippedLastFieldEndsWithReadPastEndAndAFullCount)
{
    const std::pair<std::string, int> cases[] = {
        {"P0300      again\n", 1}, {"U0100      network\n", 1}, {"\n", 1}, {"P0301      trailing comma,\n", 2}};
    for (const auto& [last, count] : cases) {
        SCOPED_TRACE(last);
        table.assign(kDtcTableSize, "");
        shell.boxes.clear();
        EXPECT_EQ(load("P0300      Random/Multiple Cylinder Misfire Detected\n" + last), count);
        expectErrorBox();
        EXPECT_EQ(table[300], "Random/Multiple Cylinder Misfire Detected");
        EXPECT_FALSE(file.is_open()) << "a failure closes the file";
    }
}

// The number is read before the letter is looked at, so a field of any letter without a decimal
// number stops the load, as does one beyond the table; what came before stays.
TEST_F(DtcFile, BadNumberStopsTheLoadKeepingEarlierEntries)
{
    for (const std::string bad : {"P4001      too high", "P1A00      hex digits", "B1A00      body code",
                                  "P-001      negative", "P0100      a stray, Part after a comma"}) {
        SCOPED_TRACE(bad);
        table.assign(kDtcTableSize, "");
        shell.boxes.clear();
        EXPECT_EQ(load("P0010      first\n" + bad + "\nP0020      after\n"), bad.starts_with("P0100") ? 2 : 1);
        expectErrorBox();
        EXPECT_EQ(table[10], "first");
        EXPECT_EQ(table[20], "");
    }
}

TEST_F(DtcFile, MissingFileOrAFolderInItsPlaceShowsTheBoxAndLoadsNothing)
{
    EXPECT_EQ(LoadDtcDescriptions(folder() + "/nowhere", table, shell), 0);
    expectErrorBox();
    EXPECT_NE(shell.boxes[0].text.find("not found"), std::string::npos) << shell.boxes[0].text;

    shell.boxes.clear();
    ASSERT_TRUE(QDir(dir.path()).mkdir(kDtcFileName));
    EXPECT_EQ(LoadDtcDescriptions(folder(), table, shell), 0);
    expectErrorBox();
}

// Things that stand in the file's place and no file read can get past: a loop of links and a
// pipe that nothing ever writes to. The program starts all the same, without descriptions.
TEST(DtcFileAtStartUp, ALinkLoopOrAPipeInItsPlaceShowsTheBoxAndTheProgramStarts)
{
    const auto loop = [](const std::filesystem::path& file) { std::filesystem::create_symlink(file, file); };
    const auto pipe = [](const std::filesystem::path& file) { ASSERT_EQ(mkfifo(file.c_str(), 0600), 0); };
    for (const auto& makeInPlace : {std::function(loop), std::function(pipe)}) {
        test::OfflineSession program;
        QTemporaryDir folder;
        makeInPlace(std::filesystem::path(folder.path().toStdString()) / kDtcFileName);
        {
            const test::Watchdog watchdog("start-up with a pipe or a link loop in place of the code file");
            app::StartSession(program.session, true, folder.path().toStdString());
        }
        const auto& boxes = program.shell.boxes;
        ASSERT_EQ(boxes.size(), 1u);
        EXPECT_EQ(boxes[0].title, "DTC ERROR");
        EXPECT_NE(boxes[0].text.find(kDtcFileName), std::string::npos) << boxes[0].text;
        EXPECT_EQ(program.screen.StatusBar1.text(4), "0 DTC LOADED");
        EXPECT_TRUE(program.session.LinkDown);
    }
}

TEST(DtcLookup, IgnoresTheLetterAndRejectsWhatIsNoTableNumber)
{
    std::vector<std::string> table(kDtcTableSize);
    table[420] = "Catalyst System Efficiency Below Threshold (Bank 1)";
    for (const char* code : {"P0420", "C0420", "B0420", "U0420"})
        EXPECT_EQ(DtcDescription(table, code), table[420]) << code;
    EXPECT_EQ(DtcDescription(table, "P4000"), "");
    for (const char* code : {"P4001", "P1A00", "P", "P-001"})
        EXPECT_THROW(DtcDescription(table, code), std::invalid_argument) << code;
}

// The file the build puts beside the program.
TEST(ShippedDtcFile, LoadsSilentlyEveryLineStoredInTheGenericRangesOnly)
{
    std::vector<std::string> table;
    test::RecordingShell shell;
    const int count = LoadDtcDescriptions(KVX_BIN_DIR, table, shell);
    EXPECT_TRUE(shell.boxes.empty()) << shell.boxes.front().text;
    EXPECT_GE(count, 1700);

    std::ifstream text(std::string(KVX_BIN_DIR) + "/" + kDtcFileName);
    int lines = 0;
    for (std::string line; std::getline(text, line);)
        ++lines;
    EXPECT_EQ(count, lines) << "every line is one stored title: no duplicate, no stray comma";

    for (int number = 0; number < kDtcTableSize; ++number) {
        const bool generic = number < 1000 || (number >= 2000 && number < 3000) || (number >= 3400 && number < 3500);
        if (!generic) {
            EXPECT_EQ(table[number], "") << "P" << number;
        }
    }
    // A circuit's intermittent fault is numbered right after its high fault: a title that
    // follows anything else has slipped onto another code's number.
    const std::string intermittent = " Intermittent/Erratic";
    for (int number = 1; number < kDtcTableSize; ++number) {
        const std::string& title = table[number];
        if (title.size() <= intermittent.size() ||
            title.compare(title.size() - intermittent.size(), intermittent.size(), intermittent) != 0)
            continue;
        const std::string circuit = title.substr(0, title.size() - intermittent.size());
        if (circuit.size() >= 7 && circuit.compare(circuit.size() - 7, 7, "Circuit") == 0) {
            EXPECT_EQ(table[number - 1], circuit + " High") << "P" << number << " " << title;
        }
    }
    const char* fuelCap[] = {"Fuel Cap Sensor/Switch Circuit", "Fuel Cap Sensor/Switch Circuit Range/Performance",
                             "Fuel Cap Sensor/Switch Circuit Low", "Fuel Cap Sensor/Switch Circuit High",
                             "Fuel Cap Sensor/Switch Circuit Intermittent/Erratic"};
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(table[2408 + i], fuelCap[i]) << "P" << 2408 + i;
    EXPECT_EQ(table[300], "Random/Multiple Cylinder Misfire Detected");
    EXPECT_EQ(table[420], "Catalyst System Efficiency Below Threshold (Bank 1)");
    EXPECT_EQ(table[171], "System Too Lean (Bank 1)");
    EXPECT_EQ(DtcLoadedText(count), std::to_string(lines) + " DTC LOADED");
}

} // namespace
} // namespace kvx::data
