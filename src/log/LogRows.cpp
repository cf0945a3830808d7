#include "log/LogRows.h"

#include "data/ItemRows.h"
#include "link/decode/NissanDecoder.h"
#include "link/decode/ToyotaDecoder.h"
#include "log/EnhancedReplay.h"
#include "log/LogFile.h"
#include "log/LogFormat.h"
#include "log/LogHeader.h"
#include "session/Session.h"

namespace kvx::log {

namespace {

using FrameRows = std::function<std::vector<LogRow>(const std::string& frame)>;

FrameRows genericRows(const LiveDecoding& decoding)
{
    return [decoding](const std::string& frame) -> std::vector<LogRow> {
        const std::string pid = FramePid(frame);
        if (pid.empty())
            return {};
        return {{pid, decoding.describe(pid), decoding.format(frame, 1), decoding.format(frame, 2)}};
    };
}

// Nissan engine logs (the only Nissan logs the player knows).
FrameRows nissanRows()
{
    return [](const std::string& frame) {
        static const link::NissanDecoder decoder;
        std::vector<LogRow> rows;
        const std::string id = NissanFrameIdentifier(frame);
        if (id.empty())
            return rows;
        for (const data::ItemRow& row : data::NissanRows(decoder, id, ModuleNissanEcu))
            rows.push_back({row.label, row.name, data::NissanRowValue(decoder, row.label, frame, 1, ModuleNissanEcu),
                            data::NissanRowValue(decoder, row.label, frame, 2, ModuleNissanEcu)});
        return rows;
    };
}

// Toyota logs: each reply gives every sub-value of its parameter.
FrameRows toyotaRows()
{
    return [](const std::string& frame) {
        static const link::ToyotaDecoder decoder;
        std::vector<LogRow> rows;
        const std::string message = ToyotaFrameMessage(frame);
        const std::string parameter = ToyotaParameter(message);
        if (parameter.empty())
            return rows;
        for (const data::ItemRow& row : data::ToyotaRows(decoder, parameter))
            rows.push_back({row.label, row.name, data::ToyotaRowValue(decoder, row.label, message, 1),
                            data::ToyotaRowValue(decoder, row.label, message, 2)});
        return rows;
    };
}

} // namespace

LogReadResult ReadLogFrames(const std::string& logPath, const LiveDecoding& decoding,
                            const std::function<void(const LogFrame&)>& each)
{
    LogFile file(logPath, LogFile::Mode::Read);
    LogReadResult result;
    result.header = ReadHeaderRecords(file).header;
    FrameRows rowsOf;
    if (result.header == kGenericHeader)
        rowsOf = genericRows(decoding);
    else if (result.header == kNissanEcuHeader)
        rowsOf = nissanRows();
    else if (result.header == kToyotaHeader)
        rowsOf = toyotaRows();
    else
        throw LogError("Only the live-data logs the player shows can be read; this log is headed \"" +
                       result.header + "\".");
    try {
        LogFrame frame;
        while (auto text = file.readRecord(kFirstFrameRecord + result.frames)) {
            frame.receivedMs = file.readRecordTime(kFirstFrameRecord + result.frames);
            frame.number = ++result.frames;
            frame.rows = rowsOf(*text);
            each(frame);
        }
    } catch (const LogError& e) {
        result.damage = e.what();
    }
    return result;
}

} // namespace kvx::log
