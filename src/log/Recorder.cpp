#include "log/Recorder.h"

#include "link/LinkSession.h"
#include "log/LogFile.h"
#include "log/LogFormat.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

#include <QDir>
#include <QFile>

namespace kvx::log {

namespace {

const std::string kLogBoxTitle = "Log File";

void closeRecorderFile(Session& session)
{
    if (session.LogFileHandle)
        session.LogFileHandle->close();
    session.LogFileHandle.reset();
}

// The folder as the status bar shows it: the home folder as "~", so that the path fits the panel.
std::string shownFolder(const QString& folder)
{
    const QString home = QDir::homePath() + QLatin1Char('/');
    return (folder.startsWith(home) ? QStringLiteral("~/") + folder.mid(home.size()) : folder).toStdString();
}

void writeFrameCount(Session& session)
{
    session.LogFileHandle->writeRecord(kFrameCountRecord,
                                       std::to_string(session.LogRecordNumber - kFirstFrameRecord));
}

} // namespace

std::string LogFilePath(const QString& logFolder, int moduleIndex, const QDateTime& started)
{
    const QString name = QString::fromStdString(LogNamesFor(moduleIndex).fileWord) +
                         started.toString(QStringLiteral("MM-dd-yyyy ")) +
                         started.toString(QStringLiteral("HHmmss")) + QStringLiteral(".log");
    return QDir(logFolder).filePath(name).toStdString();
}

bool StartLogging(Session& session, const garage::ProgramFolders& folders, const QDateTime& started)
{
    // A start while recording abandons the old file without its frame count.
    closeRecorderFile(session);
    if (folders.makesLogFolder && !QDir().mkpath(folders.log)) {
        session.shell.messageBox(kLogBoxTitle, "Cannot create the folder " + folders.log.toStdString() +
                                                   " for the recordings.", MessageIcon::Critical);
        return false;
    }
    const std::string path = LogFilePath(folders.log, session.ModuleIndex, started);
    session.LogPath = path;
    QFile::remove(QString::fromStdString(path));
    try {
        auto file = std::make_shared<LogFile>(path, LogFile::Mode::Create);
        const std::string header = LogNamesFor(session.ModuleIndex).header;
        if (!header.empty())
            file->writeRecord(kHeaderRecord, header);
        session.LogGridRows = std::to_string(session.screen.GridMode1.rows());
        file->writeRecord(kGridRowsRecord, session.LogGridRows);
        file->writeRecord(kDateRecord, started.toString(QStringLiteral("MM/dd/yyyy")).toStdString());
        session.LogFileHandle = std::move(file);
    } catch (const LogError& e) {
        session.shell.messageBox(kLogBoxTitle, e.what(), MessageIcon::Critical);
        closeRecorderFile(session);
        return false;
    }
    session.LogRecordNumber = kFirstFrameRecord;
    session.LogStartMicros = session.link.clock().now();
    session.Logging = true;
    // The user's data folder is nowhere a user would look for it.
    if (folders.makesLogFolder)
        session.screen.StatusBar1.setText(1, "RECORDING TO " + shownFolder(folders.log));
    return true;
}

void StopLogging(Session& session)
{
    const bool wasLogging = session.Logging;
    session.Logging = false;
    if (wasLogging && session.LogFileHandle) {
        try {
            writeFrameCount(session);
        } catch (const LogError& e) {
            session.shell.messageBox(kLogBoxTitle, e.what(), MessageIcon::Critical);
        }
    }
    closeRecorderFile(session);
}

void CloseLogOnExit(Session& session)
{
    StopLogging(session);
}

} // namespace kvx::log
