#include "LogTestRig.h"

#include "link/decode/NissanDecoder.h"
#include "log/LogExport.h"
#include "log/LogFormat.h"
#include "log/Recorder.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <QProcess>
#include <gtest/gtest.h>
#include <sstream>

namespace kvx::log {
namespace {

using test::liveFrame;

LiveDecoding awkwardDecoding()
{
    return {[](const std::string&, int selector) { return selector == 1 ? "1,5 \"km/h\"" : "0.9 mph"; },
            [](const std::string& pid) { return "Speed, " + pid; }};
}

TEST(Export, EachFrameIsOneRowWithQuotedFieldsWhereNeeded)
{
    EXPECT_EQ(CsvField("two\nlines"), "\"two\nlines\"");
    test::LogRig rig;
    const std::string path = rig.file("Log/a.log");
    test::writeLog(path, kGenericHeader, "3", {liveFrame("0D", "01"), "", liveFrame("0C", "1AF8")});
    std::ostringstream csv;
    const ExportResult result = ExportLog(path, awkwardDecoding(), ExportFormat::Csv, csv);
    EXPECT_EQ(result.frames, 3);
    EXPECT_EQ(result.damage, "");
    // A log without receive times leaves the time blank; a text that is not a number and a unit
    // stays whole in the value column.
    EXPECT_EQ(csv.str(), "Time (s),Frame,PID,Description,Metric,Metric unit,US,US unit\r\n"
                         ",1,0D,\"Speed, 0D\",\"1,5 \"\"km/h\"\"\",,0.9,mph\r\n"
                         ",2,,,,,,\r\n"
                         ",3,0C,\"Speed, 0C\",\"1,5 \"\"km/h\"\"\",,0.9,mph\r\n");
}

TEST(Export, NissanAndToyotaFramesGiveALinePerItemTheyCarry)
{
    test::LogRig rig;
    const link::NissanDecoder nissan;
    const std::string speed = "05621101" "04D2";
    const std::string switches = "04621302" "81";
    const std::string nissanLog = rig.file("Log/n.log");
    test::writeLog(nissanLog, kNissanEcuHeader, "3", {speed, "037F2231", switches});
    std::ostringstream csv;
    EXPECT_EQ(ExportLog(nissanLog, awkwardDecoding(), ExportFormat::Csv, csv).frames, 3);
    const std::string text = csv.str();
    EXPECT_EQ(text.rfind("Time (s),Frame,Item,Description,Metric,Metric unit,US,US unit\r\n", 0), 0u);
    EXPECT_NE(text.find(",1,1101," + CsvField(nissan.SensorName("1101", 1)) + ","), std::string::npos);
    EXPECT_NE(text.find("\r\n,2,,,,,,\r\n"), std::string::npos);
    // Register 1302 gives a line per named switch, bit 7 (set here) among them.
    EXPECT_NE(text.find(",3,1302 7," + nissan.SensorName("1302 7", 1) + ",ON,,,\r\n"), std::string::npos);
    EXPECT_NE(text.find(",3,1302 1," + nissan.SensorName("1302 1", 1) + ",OFF,,,\r\n"), std::string::npos);

    const std::string toyotaLog = rig.file("Log/t.log");
    test::writeLog(toyotaLog, kToyotaHeader, "3", {"486B1041C1" "5A" "40" "B0" "00 C101 0"});
    std::ostringstream toyota;
    EXPECT_EQ(ExportLog(toyotaLog, awkwardDecoding(), ExportFormat::Csv, toyota).frames, 1);
    // One reply of C1 gives every sub-value of C1.
    for (const char* label : {"\r\n,1,C101 0,", "\r\n,1,C102 0,", "\r\n,1,C103 0,"})
        EXPECT_NE(toyota.str().find(label), std::string::npos) << label;
}

TEST(Export, OtherLogsAreRefusedAndADamagedOneKeepsItsGoodRows)
{
    test::LogRig rig;
    const std::string gearbox = rig.file("Log/n.log");
    test::writeLog(gearbox, kNissanTcuHeader, "3", {"0562110004"});
    std::ostringstream ignored;
    EXPECT_THROW(ExportLog(gearbox, awkwardDecoding(), ExportFormat::Csv, ignored), LogError);

    const std::string cut = rig.file("Log/cut.log");
    test::writeLog(cut, kGenericHeader, "3", {liveFrame("0D", "01"), liveFrame("0D", "02")});
    QByteArray bytes = test::readAll(cut);
    test::writeAll(cut, bytes.left(bytes.size() - 3));
    std::ostringstream csv;
    const ExportResult result = ExportLog(cut, awkwardDecoding(), ExportFormat::Csv, csv);
    EXPECT_EQ(result.frames, 1);
    EXPECT_NE(result.damage.find("truncated"), std::string::npos);
}

struct ExportRun {
    int code;
    QString err;
};

ExportRun kvxExport(const QStringList& args)
{
    QProcess kvx;
    kvx.start(KVX_BIN_DIR "/kvx", QStringList{"export"} + args);
    EXPECT_TRUE(kvx.waitForFinished(10000));
    return {kvx.exitCode(), kvx.readAllStandardError()};
}

// The output named as the log itself, also by another path or a link, is refused before anything
// is written; a refused export leaves no file and what stood under the name before.
TEST(Export, TheLogIsNeverItsOwnOutputAndARefusalWritesNothing)
{
    test::LogRig rig;
    const std::string log = rig.file("Log/a.log");
    test::writeLog(log, kGenericHeader, "3", {liveFrame("0D", "01")});
    const QByteArray bytes = test::readAll(log);
    ASSERT_TRUE(QFile::link(QString::fromStdString(log), QString::fromStdString(rig.file("link.csv"))));
    for (const std::string& same : {log, rig.file("Log/../Log/a.log"), rig.file("link.csv")}) {
        const ExportRun run = kvxExport({QString::fromStdString(log), "-o", QString::fromStdString(same)});
        EXPECT_EQ(run.code, 1) << same;
        EXPECT_TRUE(run.err.contains("is the log itself")) << run.err.toStdString();
        EXPECT_EQ(test::readAll(log), bytes) << same;
    }

    const std::string gearbox = rig.file("Log/n.log");
    test::writeLog(gearbox, kNissanTcuHeader, "3", {"0562110004"});
    EXPECT_EQ(kvxExport({QString::fromStdString(gearbox)}).code, 1);
    EXPECT_FALSE(QFile::exists(QString::fromStdString(rig.file("Log/n.csv"))));
    test::writeAll(rig.file("kept.csv"), "kept");
    EXPECT_EQ(kvxExport({QString::fromStdString(gearbox), "-o", QString::fromStdString(rig.file("kept.csv"))}).code, 1);
    EXPECT_EQ(test::readAll(rig.file("kept.csv")), "kept");

    EXPECT_EQ(kvxExport({QString::fromStdString(log), "-o", QString::fromStdString(rig.file("kept.csv"))}).code, 0);
    EXPECT_TRUE(test::readAll(rig.file("kept.csv")).startsWith("Time (s),Frame,PID,"));
    EXPECT_EQ(QDir(rig.dir.path()).entryList(QDir::Files).size(), 2) << "no temporary file is left behind";
}

// A recording with receive times exported by kvx as a spreadsheet and a script read it: time in
// seconds first, then each value's number and unit in columns of their own.
TEST(Export, TimedRecordingGivesTimeAndSplitValuesAsCsvAndJson)
{
    test::LogRig rig;
    ASSERT_TRUE(StartLogging(rig.session, rig.folder(), QDateTime(QDate(2009, 1, 17), QTime(19, 52, 7))));
    rig.linkClock.sleepFor(link::ms(250));
    WriteLogFrame(rig.session, liveFrame("0C", "1AF8"));
    rig.linkClock.sleepFor(link::ms(1500));
    WriteLogFrame(rig.session, liveFrame("0D", "32"));
    StopLogging(rig.session);
    const QString log = QString::fromStdString(rig.session.LogPath);

    const std::string csvPath = rig.file("a.csv");
    ASSERT_EQ(kvxExport({log, "-o", QString::fromStdString(csvPath)}).code, 0);
    const QList<QByteArray> lines = test::readAll(csvPath).split('\n');
    ASSERT_GE(lines.size(), 3);
    EXPECT_EQ(lines[0], "Time (s),Frame,PID,Description,Metric,Metric unit,US,US unit\r");
    EXPECT_TRUE(lines[1].startsWith("0.250,1,0C,")) << lines[1].toStdString();
    EXPECT_TRUE(lines[1].endsWith(",1726,rpm,1726,rpm\r")) << lines[1].toStdString();
    EXPECT_TRUE(lines[2].startsWith("1.750,2,0D,")) << lines[2].toStdString();
    EXPECT_TRUE(lines[2].endsWith(",50,km/h,31,mph\r")) << lines[2].toStdString();

    ASSERT_EQ(kvxExport({log, "--format", "json"}).code, 0);
    QString jsonPath = log;
    jsonPath.replace(".log", ".json");
    const QList<QByteArray> objects = test::readAll(jsonPath.toStdString()).trimmed().split('\n');
    ASSERT_EQ(objects.size(), 2);
    const QJsonObject first = QJsonDocument::fromJson(objects[0]).object();
    EXPECT_DOUBLE_EQ(first["time"].toDouble(), 0.25);
    EXPECT_EQ(first["id"].toString(), "0C");
    EXPECT_EQ(first["metric"].toString(), "1726");
    EXPECT_EQ(first["metric_unit"].toString(), "rpm");
    EXPECT_EQ(kvxExport({log, "--format", "xml"}).code, 2);
}

TEST(Export, LogInfoReportsTheFixedRecordsAndTheFramesPresent)
{
    test::LogRig rig;
    const std::string path = rig.file("Log/SAEJ1979 01-17-2009 195207.log");
    test::writeLog(path, kGenericHeader, "7", {liveFrame("0D", "01"), liveFrame("0C", "1AF8")});
    QProcess kvx;
    kvx.start(KVX_BIN_DIR "/kvx", {"log-info", QString::fromStdString(path)});
    ASSERT_TRUE(kvx.waitForFinished(10000));
    EXPECT_EQ(kvx.exitCode(), 0);
    const QString out = kvx.readAllStandardOutput();
    EXPECT_TRUE(out.contains("Header:     KORVENATRONIX OBDII LOG\n")) << out.toStdString();
    EXPECT_TRUE(out.contains("Date:       01/17/2009\n"));
    EXPECT_TRUE(out.contains("Grid rows:  7\n"));
    EXPECT_TRUE(out.contains("Frames:     2\nIn file:    2\n"));

    kvx.start(KVX_BIN_DIR "/kvx", {"log-info", QString::fromStdString(rig.file("Log/none.log"))});
    ASSERT_TRUE(kvx.waitForFinished(10000));
    EXPECT_EQ(kvx.exitCode(), 1);
    EXPECT_TRUE(QString(kvx.readAllStandardError()).contains("No such file"));
}

} // namespace
} // namespace kvx::log
