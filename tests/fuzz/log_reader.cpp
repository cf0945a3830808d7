// Feeds arbitrary bytes to the log reader as a file from record 98 on (the records before it are
// never read): every record it reaches must either read or fail with LogError, never crash.
#include "log/LogFile.h"
#include "log/LogFormat.h"
#include "log/LogHeader.h"

#include <QFile>
#include <QTemporaryFile>
#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static QTemporaryFile scratch;
    if (!scratch.isOpen() && !scratch.open())
        return 0;
    scratch.resize(0);
    scratch.seek(0);
    scratch.write(QByteArray((kvx::log::kGridRowsRecord - 1) * kvx::log::kRecordSize, '\0'));
    scratch.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
    scratch.flush();
    try {
        kvx::log::LogFile file(scratch.fileName().toStdString(), kvx::log::LogFile::Mode::Read);
        const auto records = kvx::log::ReadHeaderRecords(file);
        kvx::log::RecogniseHeader(records.header);
        kvx::log::FrameCountValue(records.frameCount);
        long record = kvx::log::kFirstFrameRecord - 1;
        while (file.readRecord(record))
            ++record;
    } catch (const kvx::log::LogError&) {
        // A clear refusal is the wanted outcome for a damaged file.
    }
    return 0;
}
