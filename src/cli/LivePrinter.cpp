#include "cli/LivePrinter.h"

#include "cli/ScreenText.h"
#include "data/GridLayouts.h"
#include "log/LogExport.h"
#include "session/GridModel.h"

#include <algorithm>
#include <cstdio>

namespace kvx::cli {

namespace {

constexpr std::size_t kValueWidth = 16;
constexpr const char* kNoAnswer = "(no answer)";

bool ticked(const GridModel& grid, int row)
{
    return grid.text(row, data::MarkerColumn) != data::kEmptyMarker;
}

QString timeText(const QDateTime& time)
{
    return time.toString(Qt::ISODateWithMs);
}

} // namespace

LivePrinter::LivePrinter(GridModel& grid, OutputFormat format, const QString& itemWord)
    : grid_(grid), format_(format)
{
    for (int row = 1; row < grid_.rows(); ++row) {
        if (!ticked(grid_, row))
            continue;
        idWidth_ = std::max(idWidth_, DisplayWidth(grid_.text(row, data::PidColumn)));
        descriptionWidth_ = std::max(descriptionWidth_, DisplayWidth(grid_.text(row, data::DescriptionColumn)));
    }
    watch_ = QObject::connect(&grid_, &GridModel::cellChanged, [this](int row, int col) {
        if (col == data::ValueColumn && row >= 0 && static_cast<std::size_t>(row) < arrived_.size())
            arrived_[static_cast<std::size_t>(row)] = QDateTime::currentDateTimeUtc();
    });
    if (format_ == OutputFormat::Csv) {
        std::printf("Time,Pass,%s,Description,Metric,US\n", qPrintable(itemWord));
        std::fflush(stdout);
    }
}

LivePrinter::~LivePrinter()
{
    QObject::disconnect(watch_);
}

void LivePrinter::startPass()
{
    for (int row = 1; row < grid_.rows(); ++row) {
        if (!ticked(grid_, row))
            continue;
        grid_.setText(row, data::ValueColumn, "");
        grid_.setText(row, data::AltValueColumn, "");
    }
    arrived_.assign(static_cast<std::size_t>(grid_.rows()), QDateTime());
}

void LivePrinter::printPass(long pass, bool cutShort)
{
    const QDateTime ended = QDateTime::currentDateTimeUtc();
    for (int row = 1; row < grid_.rows(); ++row) {
        if (!ticked(grid_, row))
            continue;
        const std::string& id = grid_.text(row, data::PidColumn);
        const std::string& description = grid_.text(row, data::DescriptionColumn);
        const std::string& metric = grid_.text(row, data::ValueColumn);
        const std::string& us = grid_.text(row, data::AltValueColumn);
        const bool answered = !metric.empty() || !us.empty();
        if (!answered && cutShort)
            continue;
        const QDateTime& arrived = arrived_[static_cast<std::size_t>(row)];
        const QString time = timeText(answered && arrived.isValid() ? arrived : ended);
        switch (format_) {
        case OutputFormat::Text: {
            char number[24];
            std::snprintf(number, sizeof number, "%5ld", pass);
            const std::string line = std::string(number) + "  " + PadToWidth(id, idWidth_) + "  " +
                                     PadToWidth(description, descriptionWidth_) + "  " +
                                     (answered ? PadToWidth(metric, kValueWidth) + "  " + us : kNoAnswer);
            std::printf("%s\n", line.substr(0, line.find_last_not_of(' ') + 1).c_str());
            break;
        }
        case OutputFormat::Csv:
            std::printf("%s,%ld,%s,%s,%s,%s\n", qPrintable(time), pass, CsvField(id).c_str(),
                        CsvField(description).c_str(), CsvField(metric).c_str(), CsvField(us).c_str());
            break;
        case OutputFormat::Json:
            PrintJsonLine({{"time", time},
                           {"pass", static_cast<qint64>(pass)},
                           {"id", Utf8(id)},
                           {"description", Utf8(description)},
                           {"metric", answered ? QJsonValue(Utf8(metric)) : QJsonValue()},
                           {"us", answered ? QJsonValue(Utf8(us)) : QJsonValue()}});
            break;
        }
    }
    std::fflush(stdout);
}

} // namespace kvx::cli
