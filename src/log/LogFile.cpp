#include "log/LogFile.h"

#include "link/LinkSession.h"
#include "session/Session.h"

#include <QByteArrayView>
#include <array>

namespace kvx::log {

namespace {

constexpr std::array<char, 4> kTimeMarker{'\x1E', 'K', 'T', '\x1F'};

// The tail for a text and a time: marker, time, then a checksum that ties both to the text.
QByteArray timeTail(const std::string& text, std::uint32_t ms)
{
    QByteArray tail(kTimeMarker.data(), static_cast<int>(kTimeMarker.size()));
    for (int shift = 0; shift < 32; shift += 8)
        tail += static_cast<char>((ms >> shift) & 0xFF);
    const QByteArray covered = QByteArray::fromStdString(text) + tail;
    const quint16 sum = qChecksum(QByteArrayView(covered));
    tail += static_cast<char>(sum & 0xFF);
    tail += static_cast<char>(sum >> 8);
    return tail;
}

} // namespace

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

void LogFile::writeFrameRecord(long number, const std::string& text, long receivedMs)
{
    writeRecord(number, text);
    if (static_cast<long>(text.size()) > kMaxTimedText || receivedMs < 0)
        return;
    const QByteArray tail = timeTail(text, static_cast<std::uint32_t>(receivedMs));
    if (!file_.seek(number * kRecordSize - kTimeTailSize) || file_.write(tail) != tail.size())
        throw LogError("Cannot write to " + path_ + ": " + file_.errorString().toStdString());
}

std::optional<long> LogFile::readRecordTime(long number)
{
    if (number < 1 || !file_.seek((number - 1) * kRecordSize))
        return std::nullopt;
    const QByteArray record = file_.read(kRecordSize);
    if (record.size() < kRecordSize)
        return std::nullopt;
    const long length = static_cast<unsigned char>(record[0]) | (static_cast<unsigned char>(record[1]) << 8);
    if (length > kMaxTimedText)
        return std::nullopt;
    const QByteArray tail = record.right(kTimeTailSize);
    std::uint32_t ms = 0;
    for (int i = 0; i < 4; ++i)
        ms |= static_cast<std::uint32_t>(static_cast<unsigned char>(tail[4 + i])) << (8 * i);
    if (tail != timeTail(record.mid(2, static_cast<int>(length)).toStdString(), ms))
        return std::nullopt;
    return static_cast<long>(ms);
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
    const link::Micros elapsed = session.link.clock().now() - session.LogStartMicros;
    session.LogFileHandle->writeFrameRecord(session.LogRecordNumber, frame, static_cast<long>(elapsed / 1000));
    ++session.LogRecordNumber;
}

} // namespace kvx::log
