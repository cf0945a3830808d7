#pragma once

#include <QString>

namespace kvx::garage {

// Where the program reads what it ships (the trouble-code file, the garage) and keeps what it
// records. Run from its build folder it keeps everything beside itself; installed, it reads from
// share/korvenatronix beside its bin folder and records into the user's data folder, since the
// program's own folder is not the user's to write in.
struct ProgramFolders {
    QString shipped;
    QString log;
    // An installed program makes its Log folder at the first recording; one run beside its files
    // expects the folder to be there and says so when it is not.
    bool makesLogFolder = false;
};

// The folders of a program that keeps everything beside itself, in programFolder.
ProgramFolders foldersBeside(const QString& programFolder);

// The folders of this run, decided by where the executable lies.
ProgramFolders runFolders();

} // namespace kvx::garage
