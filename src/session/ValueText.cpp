#include "session/ValueText.h"

#include <QRegularExpression>
#include <QString>

namespace kvx {

namespace {

// A number, then optionally one blank and a unit without digits (°C, km/h, %, g/s).
const QRegularExpression kNumberAndUnit(QStringLiteral(R"(^(-?\d+(?:\.\d+)?)(?: ([^\d\s][^\d]*))?$)"));

} // namespace

ValueParts SplitValue(const std::string& text)
{
    const auto match = kNumberAndUnit.match(QString::fromStdString(text));
    if (!match.hasMatch())
        return {text, {}};
    return {match.captured(1).toStdString(), match.captured(2).toStdString()};
}

std::optional<PlotValue> PlotValueOf(const std::string& text)
{
    if (text == "ON" || text == "OFF")
        return PlotValue{text == "ON" ? 1.0 : 0.0, true};
    const auto match = kNumberAndUnit.match(QString::fromStdString(text));
    if (!match.hasMatch())
        return std::nullopt;
    return PlotValue{match.captured(1).toDouble(), false};
}

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

} // namespace kvx
