#include "log/LogExport.h"

#include "log/LogFile.h"
#include "log/LogFormat.h"
#include "log/LogRows.h"
#include "session/ValueText.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QString>
#include <filesystem>
#include <sstream>
#include <vector>

namespace kvx::log {

namespace {

std::string secondsText(const std::optional<long>& ms)
{
    return ms ? QString::number(static_cast<double>(*ms) / 1000.0, 'f', 3).toStdString() : std::string();
}

} // namespace

ExportResult ExportLog(const std::string& logPath, const LiveDecoding& decoding, ExportFormat format, std::ostream& out)
{
    // The heading names the log's kind of item, known once the header is read.
    std::ostringstream body;
    const LogReadResult read = ReadLogFrames(logPath, decoding, [&](const LogFrame& frame) {
        std::vector<LogRow> rows = frame.rows;
        // A frame that names nothing (an empty reply, a refusal) still has its line.
        if (rows.empty())
            rows.push_back({});
        for (const LogRow& row : rows) {
            const ValueParts metric = SplitValue(row.metric), us = SplitValue(row.us);
            if (format == ExportFormat::Csv) {
                body << secondsText(frame.receivedMs) << ',' << frame.number << ',' << CsvField(row.item) << ','
                     << CsvField(row.description) << ',' << CsvField(metric.value) << ',' << CsvField(metric.unit)
                     << ',' << CsvField(us.value) << ',' << CsvField(us.unit) << "\r\n";
                continue;
            }
            const QJsonValue time = frame.receivedMs ? QJsonValue(static_cast<double>(*frame.receivedMs) / 1000.0)
                                                     : QJsonValue(QJsonValue::Null);
            const QJsonObject line{{"time", time},
                                   {"frame", static_cast<qint64>(frame.number)},
                                   {"id", QString::fromStdString(row.item)},
                                   {"description", QString::fromStdString(row.description)},
                                   {"metric", QString::fromStdString(metric.value)},
                                   {"metric_unit", QString::fromStdString(metric.unit)},
                                   {"us", QString::fromStdString(us.value)},
                                   {"us_unit", QString::fromStdString(us.unit)}};
            body << QJsonDocument(line).toJson(QJsonDocument::Compact).toStdString() << '\n';
        }
    });
    if (format == ExportFormat::Csv)
        out << "Time (s),Frame," << (read.header == kGenericHeader ? "PID" : "Item")
            << ",Description,Metric,Metric unit,US,US unit\r\n";
    out << std::move(body).str();
    return {read.frames, read.damage};
}

ExportResult ExportLogFile(const std::string& logPath, const LiveDecoding& decoding, ExportFormat format,
                           const std::string& csvPath)
{
    std::error_code ignored;
    if (std::filesystem::equivalent(logPath, csvPath, ignored))
        throw LogError("The CSV file " + csvPath + " is the log itself; choose another name for it.");
    std::ostringstream text;
    const ExportResult result = ExportLog(logPath, decoding, format, text);
    const std::string csv = std::move(text).str();
    const auto size = static_cast<qint64>(csv.size());
    QSaveFile out(QString::fromStdString(csvPath));
    if (!out.open(QIODevice::WriteOnly) || out.write(csv.data(), size) != size || !out.commit())
        throw LogError("Cannot write " + csvPath + ": " + out.errorString().toStdString());
    return result;
}

} // namespace kvx::log
