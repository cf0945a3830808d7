#include "garage/ProgramFolders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace kvx::garage {

namespace {
const QString kLogFolder = QStringLiteral("Log");
}

ProgramFolders foldersBeside(const QString& programFolder)
{
    return {programFolder, QDir(programFolder).filePath(kLogFolder), false};
}

ProgramFolders runFolders()
{
    const QString program = QCoreApplication::applicationDirPath();
    // Relative to the executable, so an unpacked package runs wherever it was unpacked.
    const QString shared = QDir::cleanPath(program + QStringLiteral("/../share/korvenatronix"));
    if (!QFileInfo(shared).isDir())
        return foldersBeside(program);
    const QString data = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    return {shared, QDir(data).filePath(kLogFolder), true};
}

} // namespace kvx::garage
