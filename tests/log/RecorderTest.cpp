#include "LogTestRig.h"

#include "log/LogFormat.h"
#include "log/Recorder.h"

#include <QFileInfo>
#include <gtest/gtest.h>

namespace kvx::log {
namespace {

using test::LogRig;
using test::readAll;

const QDateTime kStarted(QDate(2009, 1, 17), QTime(19, 52, 7));

QByteArray record(const std::string& text)
{
    QByteArray r(kRecordSize, '\0');
    r[0] = static_cast<char>(text.size());
    r.replace(2, static_cast<int>(text.size()), QByteArray::fromStdString(text));
    return r;
}

TEST(Recorder, StartAndStopAtOnceWritesOnlyTheFixedRecordsByteForByte)
{
    LogRig rig;
    rig.screen.GridMode1.setRows(5);
    ASSERT_TRUE(StartLogging(rig.session, rig.folder(), kStarted));
    EXPECT_TRUE(rig.session.Logging);
    EXPECT_EQ(rig.session.LogRecordNumber, 150);
    StopLogging(rig.session);
    EXPECT_FALSE(rig.session.Logging);

    const std::string path = rig.file("Log/SAEJ1979 01-17-2009 195207.log");
    EXPECT_EQ(rig.session.LogPath, path);
    QByteArray expected(97 * kRecordSize, '\0');
    expected += record("5") + record("0") + record(kGenericHeader) + QByteArray(kRecordSize, '\0');
    expected += record("01/17/2009").left(2 + 10);
    EXPECT_EQ(readAll(path), expected);
}

TEST(Recorder, FramesAreWrittenOnlyWhileLoggingAndLongOnesAreTheLoopsFailure)
{
    LogRig rig;
    WriteLogFrame(rig.session, "486B1041");
    EXPECT_EQ(rig.session.LogRecordNumber, 150);

    ASSERT_TRUE(StartLogging(rig.session, rig.folder(), kStarted));
    WriteLogFrame(rig.session, std::string(126, 'A'));
    EXPECT_THROW(WriteLogFrame(rig.session, std::string(127, 'A')), LogError);
    EXPECT_EQ(rig.session.LogRecordNumber, 151);
    CloseLogOnExit(rig.session);
    EXPECT_EQ(LogFile(rig.session.LogPath, LogFile::Mode::Read).readRecord(99), "1");
}

TEST(Recorder, EachModuleHasItsFileWordAndHeaderAndAnUnknownOneNoHeader)
{
    const struct {
        int module;
        std::string name, header;
    } cases[] = {
        {0, "SAEJ1979 01-17-2009 195207.log", kGenericHeader},
        {1, "NISSAN-ECU 01-17-2009 195207.log", kNissanEcuHeader},
        {2, "NISSAN-TCU 01-17-2009 195207.log", kNissanTcuHeader},
        {3, "TOYOTA-ECU 01-17-2009 195207.log", kToyotaHeader},
        {9, "01-17-2009 195207.log", ""},
    };
    for (const auto& c : cases) {
        LogRig rig;
        rig.session.ModuleIndex = c.module;
        ASSERT_TRUE(StartLogging(rig.session, rig.folder(), kStarted));
        StopLogging(rig.session);
        EXPECT_EQ(QFileInfo(QString::fromStdString(rig.session.LogPath)).fileName().toStdString(), c.name);
        EXPECT_EQ(LogFile(rig.session.LogPath, LogFile::Mode::Read).readRecord(100), c.header);
    }
}

// Beside the program a missing Log folder is the user's to make; an installed program makes its
// own in the user's data folder and says where the recording goes.
TEST(Recorder, AMissingLogFolderIsAnErrorBesideTheProgramAndMadeWhenInstalled)
{
    LogRig rig;
    QDir(rig.dir.path()).rmdir("Log");
    EXPECT_FALSE(StartLogging(rig.session, rig.folder(), kStarted));
    EXPECT_FALSE(rig.session.Logging);
    EXPECT_EQ(rig.session.LogFileHandle, nullptr);
    ASSERT_EQ(rig.shell.boxes.size(), 1u);
    EXPECT_NE(rig.shell.boxes[0].text.find("No such file or directory"), std::string::npos);
    EXPECT_FALSE(QDir(rig.dir.path()).exists("Log"));
    WriteLogFrame(rig.session, "486B1041");

    const QString data = QDir(rig.dir.path()).filePath("data/Korvenatronix OBD-II/Log");
    ASSERT_TRUE(StartLogging(rig.session, {rig.dir.path(), data, true}, kStarted));
    StopLogging(rig.session);
    EXPECT_EQ(QFileInfo(QString::fromStdString(rig.session.LogPath)).path(), data);
    EXPECT_EQ(rig.screen.StatusBar1.text(1), "RECORDING TO " + data.toStdString());
    EXPECT_EQ(rig.shell.boxes.size(), 1u);
}


// Each frame carries its receive time, by the session's clock, in the record's unused tail: the
// text reads as before, a text too long for the tail goes without, and the tail of one record
// copied behind another text is not taken for a time.
TEST(Recorder, FramesCarryTheirReceiveTimeWhereReadersOfTheTextNeverLook)
{
    LogRig rig;
    rig.linkClock.sleepFor(link::ms(5000));
    ASSERT_TRUE(StartLogging(rig.session, rig.folder(), kStarted));
    const std::string first = test::liveFrame("0C", "1AF8");
    WriteLogFrame(rig.session, first);
    rig.linkClock.sleepFor(link::ms(1234));
    WriteLogFrame(rig.session, test::liveFrame("0D", "20"));
    WriteLogFrame(rig.session, std::string(kMaxTimedText + 1, 'A'));
    WriteLogFrame(rig.session, std::string(kMaxTimedText, 'B'));
    StopLogging(rig.session);

    LogFile file(rig.session.LogPath, LogFile::Mode::Read);
    EXPECT_EQ(file.readRecord(150), first);
    EXPECT_EQ(file.readRecord(151), test::liveFrame("0D", "20"));
    EXPECT_EQ(file.readRecordTime(150), 0);
    EXPECT_EQ(file.readRecordTime(151), 1234);
    EXPECT_EQ(file.readRecordTime(152), std::nullopt);
    EXPECT_EQ(file.readRecordTime(153), 1234);
    EXPECT_EQ(file.readRecordTime(98), std::nullopt);
    EXPECT_EQ(file.readRecord(99), "4");

    QByteArray bytes = readAll(rig.session.LogPath);
    const QByteArray record150 = bytes.mid(149 * kRecordSize, kRecordSize);
    EXPECT_EQ(record150.mid(2 + static_cast<int>(first.size()), kRecordSize - kTimeTailSize - 2 - static_cast<int>(first.size())),
              QByteArray(kRecordSize - kTimeTailSize - 2 - static_cast<int>(first.size()), '\0'))
        << "nothing is written between the text and the time";
    // A shorter text over the same record leaves the old tail behind as leftovers.
    bytes.replace(149 * kRecordSize, 4, QByteArray("\x02\x00" "41", 4));
    test::writeAll(rig.session.LogPath, bytes);
    LogFile changed(rig.session.LogPath, LogFile::Mode::Read);
    EXPECT_EQ(changed.readRecord(150), "41");
    EXPECT_EQ(changed.readRecordTime(150), std::nullopt);
}

} // namespace
} // namespace kvx::log
