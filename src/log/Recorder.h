#pragma once

#include <QDateTime>
#include <string>

namespace kvx {
struct Session;
}

namespace kvx::log {

// The recording's full path: <program folder>/Log/<module word>MM-DD-YYYY HHMMSS.log.
std::string LogFilePath(const std::string& programFolder, int moduleIndex, const QDateTime& started);

// Starts a recording (chkLog ticked). The Log folder beside the program must exist; it is never
// created. A failure shows the system's reason through the shell and leaves Logging as it was.
// Returns whether recording runs.
bool StartLogging(Session& session, const std::string& programFolder, const QDateTime& started);

// Stops a recording (chkLog unticked): writes the frame count and closes the file.
void StopLogging(Session& session);

// The main window is closing: finishes a running recording and closes the file in any case.
void CloseLogOnExit(Session& session);

} // namespace kvx::log
