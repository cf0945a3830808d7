#pragma once

#include "log/LogFile.h"

#include <optional>
#include <string>

namespace kvx::log {

// The fixed records of a log, as read back.
struct LogHeaderRecords {
    std::string header;     // record 100
    std::string gridRows;   // record 98
    std::string frameCount; // record 99 ("" when the recording never stopped)
    std::string date;       // record 102
};

// Reads the fixed records. A file too short to hold a header gets a LogError in plain words, as do
// records whose length field is impossible.
LogHeaderRecords ReadHeaderRecords(LogFile& file);

// What the player makes of a header: the text it keeps and the module it implies.
struct RecognisedHeader {
    std::string header;
    std::optional<int> moduleIndex; // set when opening the log selects a module
    bool emptyGridRowsAs32 = false;
};

// Recognises record 100 against the recorders' headers, first match wins; nullopt for any other
// text (the player then says "Unknown Data Type").
std::optional<RecognisedHeader> RecogniseHeader(const std::string& header);

// The numeric value of a frame-count text: leading digits, 0 when there are none.
long FrameCountValue(const std::string& text);

} // namespace kvx::log
