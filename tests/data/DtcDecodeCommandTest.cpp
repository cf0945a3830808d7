#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace kvx::data {
namespace {

struct Decoded {
    int code;
    QString out, err;
};

Decoded decode(const QString& program, const QStringList& messages)
{
    QProcess kvx;
    kvx.start(program, QStringList{"decode"} + messages);
    EXPECT_TRUE(kvx.waitForFinished(10000));
    return {kvx.exitCode(), kvx.readAllStandardOutput(), kvx.readAllStandardError()};
}

// Stored codes P0133 and P0301, and pending P0420: each with its title from the shipped file.
const QStringList kCodeMessages{"486B10430133030100003E", "486B10470420000000002E"};

TEST(DecodeCommand, PrintsEachCodeWithTheDescriptionBesideTheProgram)
{
    const Decoded run = decode(KVX_BIN_DIR "/kvx", kCodeMessages + QStringList{"486B10430A000000000010"});
    EXPECT_EQ(run.code, 0) << run.err.toStdString();
    EXPECT_EQ(run.out.toStdString(), "P0133 - O2 Sensor Circuit Slow Response (Bank 1 Sensor 1)\n"
                                     "P0301 - Cylinder 1 Misfire Detected\n"
                                     "P0420 - Catalyst System Efficiency Below Threshold (Bank 1)\n"
                                     "P0A00 - No Desciption Available\n");
}

TEST(DecodeCommand, WithoutTheFileSaysSoOnceAndStillDecodes)
{
    QTemporaryDir dir;
    const QString program = dir.filePath("kvx");
    ASSERT_TRUE(QFile::copy(KVX_BIN_DIR "/kvx", program));
    const Decoded run = decode(program, kCodeMessages + QStringList{"486B10410C1AF822"});
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.err.count("DTC ERROR"), 1) << run.err.toStdString();
    EXPECT_EQ(run.out.count("No Desciption Available"), 3) << run.out.toStdString();
    EXPECT_TRUE(run.out.contains("1726 rpm")) << run.out.toStdString();
}

} // namespace
} // namespace kvx::data
