#include "log/LogHeader.h"

#include "log/LogFormat.h"

#include <array>
#include <cctype>
#include <limits>

namespace kvx::log {

namespace {

struct HeaderRule {
    const std::string& compareWith;
    const std::string& header;
    std::optional<int> moduleIndex;
    bool emptyGridRowsAs32;
};

// Tried in order. The transmission unit's rule compares with the engine unit's text, which the rule
// before it already took, so transmission-unit logs are deliberately left unrecognised.
const std::array<HeaderRule, 4> kHeaderRules{{
    {kGenericHeader, kGenericHeader, std::nullopt, true},
    {kNissanEcuHeader, kNissanEcuHeader, 1, false},
    {kNissanEcuHeader, kNissanTcuHeader, 2, false},
    {kToyotaHeader, kToyotaHeader, std::nullopt, true},
}};

std::string readOrEmpty(LogFile& file, long record)
{
    return file.readRecord(record).value_or(std::string());
}

} // namespace

LogHeaderRecords ReadHeaderRecords(LogFile& file)
{
    auto header = file.readRecord(kHeaderRecord);
    if (!header)
        throw LogError("The file is too short to be a log: it ends before its header record.");
    LogHeaderRecords records;
    records.header = *header;
    records.gridRows = readOrEmpty(file, kGridRowsRecord);
    records.frameCount = readOrEmpty(file, kFrameCountRecord);
    records.date = readOrEmpty(file, kDateRecord);
    return records;
}

std::optional<RecognisedHeader> RecogniseHeader(const std::string& header)
{
    for (const auto& rule : kHeaderRules)
        if (header == rule.compareWith)
            return RecognisedHeader{rule.header, rule.moduleIndex, rule.emptyGridRowsAs32};
    return std::nullopt;
}

long FrameCountValue(const std::string& text)
{
    long value = 0;
    for (char c : text) {
        if (!std::isdigit(static_cast<unsigned char>(c)))
            break;
        if (value > (std::numeric_limits<long>::max() - 9) / 10)
            return std::numeric_limits<long>::max();
        value = value * 10 + (c - '0');
    }
    return value;
}

} // namespace kvx::log
