#include "LogTestRig.h"

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

TEST(Export, OtherLogsAreRefusedAndADamagedOneKeepsItsGoodRows)
{
    test::LogRig rig;
    const std::string nissan = rig.file("Log/n.log");
    test::writeLog(nissan, kNissanEcuHeader, "3", {"0562110004"});
    std::ostringstream ignored;
    EXPECT_THROW(ExportCsv(nissan, awkwardDecoding(), ignored), LogError);

    const std::string cut = rig.file("Log/cut.log");
    test::writeLog(cut, kGenericHeader, "3", {liveFrame("0D", "01"), liveFrame("0D", "02")});
    QByteArray bytes = test::readAll(cut);
    test::writeAll(cut, bytes.left(bytes.size() - 3));
    std::ostringstream csv;
    const ExportResult result = ExportCsv(cut, awkwardDecoding(), csv);
    EXPECT_EQ(result.frames, 1);
    EXPECT_NE(result.damage.find("truncated"), std::string::npos);
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
