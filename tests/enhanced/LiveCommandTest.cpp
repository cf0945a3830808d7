#include <QProcess>
#include <gtest/gtest.h>

namespace kvx::enhanced {
namespace {

struct CommandRun {
    int code;
    QString out, err;
};

CommandRun kvxLive(const QStringList& args)
{
    QProcess kvx;
    kvx.start(KVX_BIN_DIR "/kvx", QStringList{"live"} + args);
    EXPECT_TRUE(kvx.waitForFinished(60000));
    return {kvx.exitCode(), kvx.readAllStandardOutput(), kvx.readAllStandardError()};
}

// Headless Toyota live data on the virtual vehicle: one parameter chosen, all its sub-values shown.
TEST(LiveCommand, ToyotaModulePollsTheChosenParameterWithBothUnits)
{
    const CommandRun run = kvxLive({"--module", "toyota", "--count", "1", "C1"});
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    const QStringList lines = run.out.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 3) << run.out.toStdString();
    EXPECT_TRUE(lines[0].contains("C101 0") && lines[0].contains("Coolant temperature")) << lines[0].toStdString();
    EXPECT_TRUE(lines[0].contains("°C") && lines[0].contains("°F")) << lines[0].toStdString();
    for (const QString& line : lines)
        EXPECT_TRUE(line.contains(" C1")) << line.toStdString();
}

} // namespace
} // namespace kvx::enhanced
