#include "log/LogExport.h"

#include "data/ItemRows.h"
#include "link/decode/NissanDecoder.h"
#include "link/decode/ToyotaDecoder.h"
#include "log/EnhancedReplay.h"
#include "log/LogFile.h"
#include "log/LogFormat.h"
#include "log/LogHeader.h"
#include "session/Session.h"

#include <QSaveFile>
#include <filesystem>
#include <functional>
#include <sstream>
#include <vector>

namespace kvx::log {

std::string CsvField(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (char c : text) {
        if (c == '"')
            quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

namespace {

// The lines of one frame: an item label, its description and both value texts each.
struct CsvRow {
    std::string item, description, metric, us;
};
using FrameRows = std::function<std::vector<CsvRow>(const std::string& frame)>;

FrameRows genericRows(const LiveDecoding& decoding)
{
    return [decoding](const std::string& frame) -> std::vector<CsvRow> {
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
        std::vector<CsvRow> rows;
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
        std::vector<CsvRow> rows;
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

ExportResult ExportCsv(const std::string& logPath, const LiveDecoding& decoding, std::ostream& out)
{
    LogFile file(logPath, LogFile::Mode::Read);
    const std::string header = ReadHeaderRecords(file).header;
    FrameRows rowsOf;
    if (header == kGenericHeader)
        rowsOf = genericRows(decoding);
    else if (header == kNissanEcuHeader)
        rowsOf = nissanRows();
    else if (header == kToyotaHeader)
        rowsOf = toyotaRows();
    else
        throw LogError("Only the live-data logs the player shows can be exported; this log is headed \"" + header +
                       "\".");

    out << "Frame," << (header == kGenericHeader ? "PID" : "Item") << ",Description,Metric,US\r\n";
    ExportResult result;
    try {
        while (auto frame = file.readRecord(kFirstFrameRecord + result.frames)) {
            ++result.frames;
            std::vector<CsvRow> rows = rowsOf(*frame);
            // A frame that names nothing (an empty reply, a refusal) still has its line.
            if (rows.empty())
                rows.push_back({});
            for (const CsvRow& row : rows)
                out << result.frames << ',' << CsvField(row.item) << ',' << CsvField(row.description) << ','
                    << CsvField(row.metric) << ',' << CsvField(row.us) << "\r\n";
        }
    } catch (const LogError& e) {
        result.damage = e.what();
    }
    return result;
}

ExportResult ExportCsvFile(const std::string& logPath, const LiveDecoding& decoding, const std::string& csvPath)
{
    std::error_code ignored;
    if (std::filesystem::equivalent(logPath, csvPath, ignored))
        throw LogError("The CSV file " + csvPath + " is the log itself; choose another name for it.");
    std::ostringstream text;
    const ExportResult result = ExportCsv(logPath, decoding, text);
    const std::string csv = std::move(text).str();
    const auto size = static_cast<qint64>(csv.size());
    QSaveFile out(QString::fromStdString(csvPath));
    if (!out.open(QIODevice::WriteOnly) || out.write(csv.data(), size) != size || !out.commit())
        throw LogError("Cannot write " + csvPath + ": " + out.errorString().toStdString());
    return result;
}

} // namespace kvx::log
