#include "LogTestRig.h"

#include "link/decode/NissanDecoder.h"
#include "log/LogExport.h"
#include "log/LogFormat.h"

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
    const ExportResult result = ExportCsv(path, awkwardDecoding(), csv);
    EXPECT_EQ(result.frames, 3);
    EXPECT_EQ(result.damage, "");
    EXPECT_EQ(csv.str(), "Frame,PID,Description,Metric,US\r\n"
                         "1,0D,\"Speed, 0D\",\"1,5 \"\"km/h\"\"\",0.9 mph\r\n"
                         "2,,,,\r\n"
                         "3,0C,\"Speed, 0C\",\"1,5 \"\"km/h\"\"\",0.9 mph\r\n");
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
    EXPECT_EQ(ExportCsv(nissanLog, awkwardDecoding(), csv).frames, 3);
    const std::string text = csv.str();
    EXPECT_EQ(text.rfind("Frame,Item,Description,Metric,US\r\n", 0), 0u);
    EXPECT_NE(text.find("1,1101," + CsvField(nissan.SensorName("1101", 1)) + "," +
                        CsvField(nissan.SensorValue(speed, 1, 0, 1)) + "," + CsvField(nissan.SensorValue(speed, 2, 0, 1))),
              std::string::npos);
    EXPECT_NE(text.find("\r\n2,,,,\r\n"), std::string::npos);
    // Register 1302 gives a line per named switch, bit 7 (set here) among them.
    EXPECT_NE(text.find("3,1302 7," + nissan.SensorName("1302 7", 1) + ",ON,\r\n"), std::string::npos);
    EXPECT_NE(text.find("3,1302 1," + nissan.SensorName("1302 1", 1) + ",OFF,\r\n"), std::string::npos);

    const std::string toyotaLog = rig.file("Log/t.log");
    test::writeLog(toyotaLog, kToyotaHeader, "3", {"486B1041C1" "5A" "40" "B0" "00 C101 0"});
    std::ostringstream toyota;
    EXPECT_EQ(ExportCsv(toyotaLog, awkwardDecoding(), toyota).frames, 1);
    // One reply of C1 gives every sub-value of C1.
    for (const char* label : {"\r\n1,C101 0,", "\r\n1,C102 0,", "\r\n1,C103 0,"})
        EXPECT_NE(toyota.str().find(label), std::string::npos) << label;
}

TEST(Export, OtherLogsAreRefusedAndADamagedOneKeepsItsGoodRows)
{
    test::LogRig rig;
    const std::string gearbox = rig.file("Log/n.log");
    test::writeLog(gearbox, kNissanTcuHeader, "3", {"0562110004"});
    std::ostringstream ignored;
    EXPECT_THROW(ExportCsv(gearbox, awkwardDecoding(), ignored), LogError);

    const std::string cut = rig.file("Log/cut.log");
    test::writeLog(cut, kGenericHeader, "3", {liveFrame("0D", "01"), liveFrame("0D", "02")});
    QByteArray bytes = test::readAll(cut);
    test::writeAll(cut, bytes.left(bytes.size() - 3));
    std::ostringstream csv;
    const ExportResult result = ExportCsv(cut, awkwardDecoding(), csv);
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
    EXPECT_TRUE(test::readAll(rig.file("kept.csv")).startsWith("Frame,PID,"));
    EXPECT_EQ(QDir(rig.dir.path()).entryList(QDir::Files).size(), 2) << "no temporary file is left behind";
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
