#pragma once

#include <string>

namespace kvx::cli {

// Ctrl+C while kvx polls. The first says "stopping..." and asks the loop to end at its next
// request, so the recording is finished with its frame count; the second ends kvx at once, and
// still writes the count of the frames that reached the file. logPath is the recording ("" for none).
void CatchInterrupt(const std::string& logPath);

// True once Ctrl+C was pressed after CatchInterrupt.
bool InterruptRequested();

} // namespace kvx::cli
