#pragma once

#include "garage/ProgramFolders.h"

#include <QDateTime>
#include <QString>
#include <string>

namespace kvx {
struct Session;
}

namespace kvx::log {

// The recording's full path: <log folder>/<module word>MM-DD-YYYY HHMMSS.log.
std::string LogFilePath(const QString& logFolder, int moduleIndex, const QDateTime& started);

// Starts a recording (chkLog ticked) in the folders' Log folder. Beside the program that folder
// must exist and is never created; an installed program makes it, and its status bar says which
// folder the recording goes to. A failure shows the reason through the shell and leaves Logging
// as it was. Returns whether recording runs.
bool StartLogging(Session& session, const garage::ProgramFolders& folders, const QDateTime& started);

// Stops a recording (chkLog unticked): writes the frame count and closes the file.
void StopLogging(Session& session);

// The main window is closing: finishes a running recording and closes the file in any case.
void CloseLogOnExit(Session& session);

} // namespace kvx::log
