#pragma once

#include <QFile>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace kvx {
struct Session;
}

namespace kvx::log {

// A log file is a run of fixed 128-byte records; record n (from 1) starts at (n - 1) * 128 and
// holds a 2-byte little-endian length and that many bytes of text.
constexpr long kRecordSize = 128;
constexpr long kMaxRecordText = 126;
// The receive time of a frame sits in the last bytes of its record: a marker, the milliseconds
// since recording started (4 bytes, little-endian) and a checksum over the text, marker and time,
// so bytes left over from anything else are never read as a time.
constexpr long kTimeTailSize = 10;
constexpr long kMaxTimedText = kMaxRecordText - kTimeTailSize;

class LogError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class LogFile {
public:
    enum class Mode { Create, Read };
    // Create makes a new, empty file (an existing one is replaced); Read opens an existing one.
    // Throws LogError with the system's reason when the file cannot be opened.
    LogFile(const std::string& path, Mode mode);

    const std::string& path() const { return path_; }
    bool isOpen() const { return file_.isOpen(); }
    void close() { file_.close(); }

    // Throws LogError when the text does not fit a record or the write fails.
    void writeRecord(long number, const std::string& text);
    // writeRecord, then the receive time in the record's last bytes when the text leaves room
    // for it (at most kMaxTimedText characters). Readers of the text never look there.
    void writeFrameRecord(long number, const std::string& text, long receivedMs);
    // The record's text; nullopt when the record lies past the end of the file. Throws LogError
    // for a record whose length field cannot be right (over 126, or beyond the end of the file).
    std::optional<std::string> readRecord(long number);
    // The receive time a record carries in its tail; nullopt when it has none (an older log, a
    // long text, leftovers that only look like one).
    std::optional<long> readRecordTime(long number);
    // Number of whole or partial records the file holds.
    long recordCount() const;

private:
    std::string path_;
    QFile file_;
};

// The recorder's entry point for every received frame: while logging, writes the frame as record
// LogRecordNumber with its receive time by the session's clock, and moves on by one.
void WriteLogFrame(Session& session, const std::string& frame);

} // namespace kvx::log
