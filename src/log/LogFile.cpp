#include "log/LogFile.h"

#include "session/Session.h"

namespace kvx::log {

LogFile::LogFile(const std::string& path, Mode mode) : path_(path), file_(QString::fromStdString(path))
{
    // A recording goes to the file without a buffer, so each record is on disk when its write
    // returns: a crash keeps every frame written, and a full disk fails the write that met it.
    QIODevice::OpenMode how = mode == Mode::Create
                                  ? (QIODevice::ReadWrite | QIODevice::Truncate | QIODevice::Unbuffered)
                                  : QIODevice::ReadOnly;
    if (!file_.open(how))
        throw LogError("Cannot open " + path + ": " + file_.errorString().toStdString());
}

void LogFile::writeRecord(long number, const std::string& text)
{
    if (static_cast<long>(text.size()) > kMaxRecordText)
        throw LogError("A log record holds at most 126 characters; this frame has " +
                       std::to_string(text.size()) + ".");
    if (number < 1)
        throw LogError("Log record numbers start at 1.");
    char buf[kRecordSize] = {};
    buf[0] = static_cast<char>(text.size() & 0xFF);
    buf[1] = static_cast<char>((text.size() >> 8) & 0xFF);
    text.copy(buf + 2, text.size());
    // Only the length and the text are written; the rest of the record keeps what the file holds.
    if (!file_.seek((number - 1) * kRecordSize) ||
        file_.write(buf, static_cast<qint64>(2 + text.size())) != static_cast<qint64>(2 + text.size()))
        throw LogError("Cannot write to " + path_ + ": " + file_.errorString().toStdString());
}

std::optional<std::string> LogFile::readRecord(long number)
{
    if (number < 1)
        return std::nullopt;
    const qint64 start = (number - 1) * kRecordSize;
    if (start >= file_.size())
        return std::nullopt;
    if (!file_.seek(start))
        throw LogError("Cannot read " + path_ + ": " + file_.errorString().toStdString());
    QByteArray head = file_.read(2);
    if (head.size() < 2)
        throw LogError("Log record " + std::to_string(number) + " is cut short: the file is truncated.");
    const long length = static_cast<unsigned char>(head[0]) | (static_cast<unsigned char>(head[1]) << 8);
    if (length > kMaxRecordText)
        throw LogError("Log record " + std::to_string(number) + " claims " + std::to_string(length) +
                       " characters; a record holds at most 126. The file is damaged or not a log.");
    QByteArray body = file_.read(length);
    if (body.size() < length)
        throw LogError("Log record " + std::to_string(number) + " is cut short: the file is truncated.");
    return body.toStdString();
}

long LogFile::recordCount() const
{
    return static_cast<long>((file_.size() + kRecordSize - 1) / kRecordSize);
}

void WriteLogFrame(Session& session, const std::string& frame)
{
    if (!session.Logging || !session.LogFileHandle)
        return;
    session.LogFileHandle->writeRecord(session.LogRecordNumber, frame);
    ++session.LogRecordNumber;
}

} // namespace kvx::log
