#include "cli/KvxProcess.h"
#include "log/LogFile.h"
#include "log/LogFormat.h"
#include "support/FileSizeLimit.h"
#include "support/ProgramWindow.h"

#include <QCheckBox>
#include <gtest/gtest.h>

using namespace kvx;

namespace {

constexpr long kFramesThatFit = 10;

// Whether the file on disk, read apart from the recorder, holds this record whole.
bool onDisk(const std::string& path, long record)
{
    try {
        return log::LogFile(path, log::LogFile::Mode::Read).readRecord(record).has_value();
    } catch (const log::LogError&) {
        return false;
    }
}

} // namespace

// Live data recorded onto a disk that fills up: each frame is on disk as soon as it is written,
// and the write that fails ends polling with a box and finishes the file with the frames it has.
TEST(RecordingFault, AFullDiskEndsLiveDataAndTheRecordingKeepsItsFrames)
{
    for (int module : {ModuleGeneric, ModuleNissanEcu}) {
        SCOPED_TRACE(module);
        test::ProgramWindow p("");
        ASSERT_TRUE(p.actions.ConnectModule(module));
        auto* chkLog = p.find<QCheckBox>("chkLog");
        QTest::mouseClick(chkLog, Qt::LeftButton);
        ASSERT_TRUE(p.session.Logging);
        const std::string path = p.session.LogPath;

        long buffered = 0;
        int pumps = 0;
        p.shell.onProcessEvents = [&] {
            const long last = p.session.LogRecordNumber - 1;
            if (p.session.Logging && last >= log::kFirstFrameRecord && !onDisk(path, last))
                ++buffered;
            if (++pumps == 1000)
                p.click("cmdStop");
        };
        {
            const test::FileSizeLimit disk((log::kFirstFrameRecord - 1 + kFramesThatFit) * log::kRecordSize);
            p.click("cmdRequestMode1");
        }
        EXPECT_EQ(buffered, 0) << "frames still waiting in a buffer after their write returned";

        ASSERT_EQ(p.shell.boxes.size(), 1u);
        EXPECT_EQ(p.shell.boxes[0].title, "Error");
        EXPECT_NE(p.shell.boxes[0].text.find(path), std::string::npos) << p.shell.boxes[0].text;
        EXPECT_LT(pumps, 1000);
        EXPECT_FALSE(p.session.Busy);
        EXPECT_FALSE(p.session.LinkDown);
        EXPECT_TRUE((module == ModuleGeneric ? p.screen.tmrKeepAlive : p.screen.tmrKeepAliveEnhance).enabled());
        EXPECT_FALSE(p.session.Logging);
        EXPECT_FALSE(chkLog->isChecked());

        log::LogFile file(path, log::LogFile::Mode::Read);
        EXPECT_EQ(file.readRecord(log::kFrameCountRecord), std::to_string(kFramesThatFit));
        EXPECT_TRUE(file.readRecord(log::kFirstFrameRecord + kFramesThatFit - 1).has_value());
        EXPECT_FALSE(file.readRecord(log::kFirstFrameRecord + kFramesThatFit).has_value());
    }
}

// The same disk under kvx: the command fails with the reason, and the recording is finished
// with the frames it holds.
TEST(RecordingFault, AFullDiskEndsKvxLiveAndTheRecordingKeepsItsFrames)
{
    constexpr long kFramesThatFit = 3;
    cli::test::Kvx kvx;
    const QString logFolder = kvx.ownProgram();
    cli::test::Result run;
    {
        const test::FileSizeLimit disk((log::kFirstFrameRecord - 1 + kFramesThatFit) * log::kRecordSize);
        run = kvx.run({"live", "--port", "sim", "--virtual-time", "--count", "50", "--log", "0C"});
    }
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.contains("Cannot write")) << run.err.toStdString();
    const QStringList logs = QDir(logFolder).entryList({"*.log"});
    ASSERT_EQ(logs.size(), 1) << run.err.toStdString();
    log::LogFile file(QDir(logFolder).filePath(logs[0]).toStdString(), log::LogFile::Mode::Read);
    EXPECT_EQ(file.readRecord(log::kFrameCountRecord), std::to_string(kFramesThatFit));
    EXPECT_TRUE(file.readRecord(log::kFirstFrameRecord + kFramesThatFit - 1).has_value());
}
