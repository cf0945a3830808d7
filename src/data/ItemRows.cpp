#include "data/ItemRows.h"

#include "link/decode/NissanDecoder.h"
#include "link/decode/ToyotaDecoder.h"

#include <cctype>

namespace kvx::data {

namespace {

constexpr int kSwitchesPerRegister = 8;
// A Toyota sub-value starts at data byte a (1-8) and is the value (b = 0) or bit b-1 of it.
constexpr int kToyotaMaxByte = 8;
constexpr int kToyotaMaxBit = 8;

bool isDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }

bool isSwitchRegister(const std::string& identifier) { return identifier.rfind("13", 0) == 0; }

std::string twoDigits(int n) { return (n < 10 ? "0" : "") + std::to_string(n); }

} // namespace

std::vector<ItemRow> NissanRows(const link::NissanDecoder& decoder, const std::string& identifier, int moduleIndex)
{
    if (!isSwitchRegister(identifier))
        return {{identifier, decoder.SensorName(identifier, moduleIndex)}};
    std::vector<ItemRow> rows;
    for (int bit = 0; bit < kSwitchesPerRegister; ++bit) {
        const std::string label = identifier + " " + std::to_string(bit);
        std::string name = decoder.SensorName(label, moduleIndex);
        if (!name.empty())
            rows.push_back({label, std::move(name)});
    }
    return rows;
}

std::string NissanRowValue(const link::NissanDecoder& decoder, const std::string& label, const std::string& frame,
                           int kind, int moduleIndex)
{
    if (!isSwitchRegister(label))
        return decoder.SensorValue(frame, kind, 0, moduleIndex);
    if (kind != 1 || label.empty() || !isDigit(label.back()))
        return {};
    return decoder.SensorValue(frame, 1, label.back() - '0', moduleIndex);
}

std::vector<ItemRow> ToyotaRows(const link::ToyotaDecoder& decoder, const std::string& parameter)
{
    std::vector<ItemRow> rows;
    for (int a = 1; a <= kToyotaMaxByte; ++a)
        for (int b = 0; b <= kToyotaMaxBit; ++b) {
            std::string name = decoder.SensorName(parameter, a, b);
            if (!name.empty())
                rows.push_back({parameter + twoDigits(a) + " " + std::to_string(b), std::move(name)});
        }
    return rows;
}

std::string ToyotaRowValue(const link::ToyotaDecoder& decoder, const std::string& label, const std::string& message,
                           int kind)
{
    if (label.size() < 6 || !isDigit(label[2]) || !isDigit(label[3]) || !isDigit(label.back()))
        return {};
    const int a = (label[2] - '0') * 10 + (label[3] - '0');
    return decoder.SensorValue(a, label.back() - '0', message, kind);
}

} // namespace kvx::data
