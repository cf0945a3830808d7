#pragma once

#include "log/LogFile.h"

#include <QByteArray>
#include <QFile>
#include <string>
#include <vector>

namespace kvx::test {

inline QByteArray readAll(const std::string& path)
{
    QFile f(QString::fromStdString(path));
    f.open(QIODevice::ReadOnly);
    return f.readAll();
}

inline void writeAll(const std::string& path, const QByteArray& bytes)
{
    QFile f(QString::fromStdString(path));
    f.open(QIODevice::WriteOnly | QIODevice::Truncate);
    f.write(bytes);
}

// A log written record by record, as the recorder lays it out; with `times`, each frame carries
// its receive time in milliseconds, as the recorder writes it.
inline void writeLog(const std::string& path, const std::string& header, const std::string& rows,
                     const std::vector<std::string>& frames, std::string count = "-", const std::vector<long>& times = {})
{
    log::LogFile file(path, log::LogFile::Mode::Create);
    file.writeRecord(98, rows);
    file.writeRecord(100, header);
    file.writeRecord(102, "01/17/2009");
    for (std::size_t k = 0; k < frames.size(); ++k) {
        if (k < times.size())
            file.writeFrameRecord(150 + static_cast<long>(k), frames[k], times[k]);
        else
            file.writeRecord(150 + static_cast<long>(k), frames[k]);
    }
    file.writeRecord(99, count == "-" ? std::to_string(frames.size()) : count);
}

// A generic live-data reply for a parameter: header 48 6B 10, service 41, the parameter and data.
inline std::string liveFrame(const std::string& pid, const std::string& data)
{
    return "486B1041" + pid + data + "00";
}

} // namespace kvx::test
