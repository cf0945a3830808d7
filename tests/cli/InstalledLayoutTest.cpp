#include "KvxProcess.h"

namespace kvx::cli::test {
namespace {

// Installed, kvx reads what the package ships from share/korvenatronix beside its bin folder and
// records into the user's data folder, which it makes at the first recording.
TEST(InstalledLayout, SharedFilesAreReadAndRecordingsGoToTheUsersDataFolder)
{
    Kvx kvx;
    const QString logs = kvx.installedProgram();

    const Result codes = kvx.run({"dtc", "--port", "sim", "--virtual-time"});
    EXPECT_EQ(codes.code, 0) << codes.err.toStdString();
    EXPECT_TRUE(codes.out.contains("P0301 - Cylinder 1 Misfire Detected")) << codes.out.toStdString();
    EXPECT_TRUE(kvx.run({"sim", "--list"}).out.startsWith("hybrid "));

    ASSERT_FALSE(QDir(logs).exists());
    const Result live = kvx.run({"live", "--port", "sim", "--virtual-time", "--count", "1", "--log", "0C"});
    EXPECT_EQ(live.code, 0) << live.err.toStdString();
    const QStringList files = QDir(logs).entryList({"SAEJ1979 *.log"});
    ASSERT_EQ(files.size(), 1);
    EXPECT_TRUE(live.err.contains("recording to " + QDir(logs).filePath(files[0]))) << live.err.toStdString();
}

} // namespace
} // namespace kvx::cli::test
