#include "LogTestRig.h"

#include "log/LogController.h"
#include "log/LogFormat.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>
#include <random>

namespace kvx::log {
namespace {

using test::liveFrame;
using test::readAll;
using test::writeAll;
using test::writeLog;

using test::Player;

const test::RecordingShell::Box& onlyBox(const Player& p)
{
    EXPECT_EQ(p.rig.shell.boxes.size(), 1u);
    return p.rig.shell.boxes.back();
}

const std::vector<std::string> kFrames{liveFrame("0C", "1AF8"), liveFrame("0D", "32"), liveFrame("05", "7B")};

TEST(DamagedLog, FilesThatCannotBeOpenedAsLogsAreRefusedInPlainWords)
{
    const struct {
        const char* what;
        QByteArray bytes;
        std::string says;
    } cases[] = {
        {"empty file", QByteArray(), "too short to be a log"},
        {"text file", QByteArray("name,value\nrpm,800\n"), "too short to be a log"},
        {"header length over 126", QByteArray(99 * kRecordSize, '\0') + QByteArray("\xFF\x00", 2) + QByteArray(126, 'x'),
         "claims 255 characters; a record holds at most 126. The file is damaged or not a log."},
        {"header cut short", QByteArray(99 * kRecordSize, '\0') + QByteArray("\x17\x00KORVENA", 9), "truncated"},
    };
    for (const auto& c : cases) {
        Player p;
        writeAll(p.path(), c.bytes);
        EXPECT_FALSE(p.controller.OpenLogFile(p.path())) << c.what;
        EXPECT_FALSE(p.controller.isOpen());
        EXPECT_EQ(onlyBox(p).title, "Error") << c.what;
        EXPECT_NE(onlyBox(p).text.find(c.says), std::string::npos) << c.what << ": " << onlyBox(p).text;
        EXPECT_EQ(p.controller.fileLabel(), "File:");
    }
    Player missing;
    EXPECT_FALSE(missing.controller.OpenLogFile(missing.rig.file("Log/none.log")));
    EXPECT_NE(onlyBox(missing).text.find("No such file"), std::string::npos);
}

TEST(DamagedLog, ACountBeyondTheSliderIsRefusedAndAMissingCountIsTakenFromTheFile)
{
    Player tooLong;
    writeLog(tooLong.path(), kGenericHeader, "4", kFrames, "32768");
    EXPECT_FALSE(tooLong.controller.OpenLogFile(tooLong.path()));
    EXPECT_NE(onlyBox(tooLong).text.find("at most 32767"), std::string::npos);

    Player limit;
    writeLog(limit.path(), kGenericHeader, "4", kFrames, "32767");
    EXPECT_TRUE(limit.controller.OpenLogFile(limit.path()));
    EXPECT_EQ(limit.controller.maximum(), 32767);

    // A recording cut off before its stop has no count record.
    Player unfinished;
    writeLog(unfinished.path(), kGenericHeader, "4", kFrames, "");
    EXPECT_TRUE(unfinished.controller.OpenLogFile(unfinished.path()));
    EXPECT_EQ(unfinished.controller.totalFramesLabel(), "Total Frames: 3");
    EXPECT_EQ(unfinished.controller.maximum(), 3);
}

TEST(DamagedLog, PlaybackStopsWithAMessageAtATruncatedOrImpossibleFrame)
{
    Player truncated;
    writeLog(truncated.path(), kGenericHeader, "4", kFrames);
    QByteArray bytes = readAll(truncated.path());
    writeAll(truncated.path(), bytes.left(bytes.size() - 4));
    ASSERT_TRUE(truncated.controller.open(truncated.path()));
    truncated.controller.play();
    EXPECT_EQ(truncated.shown.size(), 3u); // record 149 and the two whole frames
    EXPECT_NE(onlyBox(truncated).text.find("truncated"), std::string::npos);
    EXPECT_EQ(truncated.rig.screen.StatusBar1.text(1), "LOG...END");
    EXPECT_FALSE(truncated.rig.session.Replaying);

    Player overlong;
    writeLog(overlong.path(), kGenericHeader, "4", kFrames);
    bytes = readAll(overlong.path());
    bytes[qsizetype{150 * kRecordSize}] = static_cast<char>(200); // the second frame's length
    writeAll(overlong.path(), bytes);
    ASSERT_TRUE(overlong.controller.open(overlong.path()));
    overlong.controller.play();
    EXPECT_EQ(overlong.shown.size(), 2u);
    EXPECT_NE(onlyBox(overlong).text.find("at most 126"), std::string::npos);
}

// Random damage to a good log: the player must open or refuse it, and play what it opened, without
// throwing, crashing or running on. Seeded, so a failure repeats.
TEST(DamagedLog, RandomlyDamagedLogsNeverCrashOrHangThePlayer)
{
    Player p;
    writeLog(p.path(), kGenericHeader, "4", kFrames);
    const QByteArray good = readAll(p.path());
    std::mt19937 random(20090117);
    QElapsedTimer budget;
    budget.start();
    int runs = 0;
    while (budget.elapsed() < 2000 && runs < 1000) {
        QByteArray bytes = good;
        const int edits = 1 + static_cast<int>(random() % 8);
        for (int e = 0; e < edits; ++e) {
            const int at = static_cast<int>(random() % static_cast<unsigned>(bytes.size()));
            switch (random() % 4) {
            case 0: bytes[at] = static_cast<char>(random()); break;
            case 1: bytes.truncate(at); break;
            // Length fields are where a reader goes wrong, so they are hit on purpose.
            case 2: bytes[qsizetype{(at / kRecordSize) * kRecordSize}] = static_cast<char>(random()); break;
            default: bytes.append(QByteArray(static_cast<int>(random() % 300), static_cast<char>(random()))); break;
            }
            if (bytes.isEmpty())
                break;
        }
        p.rig.shell.boxes.clear();
        p.shown.clear();
        writeAll(p.path(), bytes);
        if (p.controller.open(p.path())) {
            p.controller.play();
            EXPECT_FALSE(p.rig.session.Replaying);
            EXPECT_LE(static_cast<long>(p.shown.size()), bytes.size() / kRecordSize);
        } else {
            EXPECT_FALSE(p.rig.shell.boxes.empty());
        }
        ++runs;
    }
    EXPECT_GT(runs, 50);
}

} // namespace
} // namespace kvx::log
