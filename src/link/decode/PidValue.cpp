#include "link/decode/PidValue.h"

#include "link/ProtocolBytes.h"
#include "link/ReplyText.h"
#include "link/decode/NumberText.h"
#include "link/decode/PidTable.h"
#include "link/decode/PidWords.h"
#include "link/decode/TroubleCodes.h"

namespace kvx::link::decode {

namespace {

constexpr std::uint8_t kLiveReply = kline::positiveReply(kline::kCurrentData);
constexpr std::uint8_t kFreezeReply = kline::positiveReply(kline::kFreezeFrame);

int word(const std::uint8_t* d)
{
    return d[0] * 256 + d[1];
}

// Narrow-band sensors: the voltage in the first cell, the fuel trim it drives in the second.
std::string o2Narrow(const std::uint8_t* d, int selector)
{
    if (selector == Metric)
        return fixed(d[0] / 200.0, 3) + " V";
    // A trim byte of FF marks a sensor that the fuel control does not use.
    if (d[1] == 0xFF)
        return "trim not used";
    return "trim " + withUnit((d[1] - 128) * 100.0 / 128.0, 1, "%");
}

// Wide-range sensors: the equivalence ratio in the first cell, the voltage or current in the second.
std::string o2Wide(const std::uint8_t* d, bool current, int selector)
{
    if (selector == Metric)
        return "ratio " + fixed(word(d) * 2.0 / 65536.0, 3);
    if (current)
        return withUnit(word(d + 2) / 256.0 - 128.0, 2, "mA");
    return withUnit(word(d + 2) * 8.0 / 65536.0, 3, "V");
}

std::string scaled(const PidRow& row, double raw, int selector)
{
    return quantity(raw * row.scale + row.offset, row.decimals, row.unit, selector);
}

// Each selector's text fits a 20-character column. Parameters with a unit give it in metric (1)
// and US customary (2); the others split their facts over the two cells.
std::string valueText(const PidRow& row, const std::uint8_t* d, int selector)
{
    const int cell = selector;
    switch (row.form) {
    case Form::SupportBitmap: return supportedList(d, row.pid);
    case Form::MonitorStatus: return monitorCell(d, false, cell);
    case Form::DriveCycleStatus: return monitorCell(d, true, cell);
    case Form::TroubleCode: return d[0] == 0 && d[1] == 0 ? "none" : troubleCode(d[0], d[1]);
    case Form::FuelSystem: return fuelSystemText(d[cell - 1]);
    case Form::SecondaryAir: return secondaryAirText(d[0]);
    case Form::SensorsTwoBanks: return sensorsPresentCell(d[0], false, cell);
    case Form::SensorsFourBanks: return sensorsPresentCell(d[0], true, cell);
    case Form::ObdStandard: return obdStandardName(d[0], true);
    case Form::AuxInput: return auxInputText(d[0]);
    case Form::FuelType: return fuelTypeName(d[0]);
    case Form::Byte: return scaled(row, d[0], selector);
    case Form::Word: return scaled(row, word(d), selector);
    case Form::SignedWord: return scaled(row, static_cast<std::int16_t>(word(d)), selector);
    case Form::BytePair: return scaled(row, d[0], selector) + ", " + scaled(row, d[1], selector);
    case Form::O2Narrow: return o2Narrow(d, selector);
    case Form::O2WideVoltage: return o2Wide(d, false, selector);
    case Form::O2WideCurrent: return o2Wide(d, true, selector);
    case Form::MaxValues:
        if (cell == 1)
            return "ratio " + std::to_string(d[0]) + ", " + std::to_string(d[1]) + " V";
        return std::to_string(d[2]) + " mA, " + quantity(d[3] * 10.0, 0, Unit::KpaManifold, selector);
    case Form::MaxAirFlow: return quantity(d[0] * 10.0, 0, Unit::GramsPerSecond, selector);
    }
    return {};
}

// The first sensor parameter of the block a PID belongs to, or -1 when it names no sensor.
int sensorBlockStart(const PidRow& row)
{
    switch (row.form) {
    case Form::O2Narrow: return 0x14;
    case Form::O2WideVoltage: return 0x24;
    case Form::O2WideCurrent: return 0x34;
    default: return -1;
    }
}

std::string valueAfter(std::string_view message, std::uint8_t service, std::size_t skip, int selector)
{
    const auto m = readMessage(message);
    if (!m || m->service != service || m->data.size() < skip)
        return {};
    return pidValueText(m->data[0], m->data.data() + skip, m->data.size() - skip, selector);
}

} // namespace

std::string quantity(double metric, int decimals, Unit unit, int selector)
{
    const UnitText& u = unitText(unit);
    if (selector == Metric)
        return withUnit(metric, decimals, u.metric);
    return withUnit(metric * u.usFactor + u.usOffset, decimals + u.usExtraDecimals, u.us);
}

std::string pidValueText(int pid, const std::uint8_t* data, std::size_t size, int selector)
{
    const PidRow* row = findPid(pid);
    if (!row || size < row->bytes || (selector != Metric && selector != Customary))
        return {};
    return valueText(*row, data, selector);
}

std::string describePid(std::string_view pid, std::string_view o2Layout)
{
    const auto number = hexByteAt(pid, 0);
    const PidRow* row = number && pid.size() == 2 ? findPid(*number) : nullptr;
    if (!row)
        return {};
    const int start = sensorBlockStart(*row);
    if (start < 0)
        return row->description;
    const bool fourBanks = o2Layout == "1D" || o2Layout == "1d";
    return std::string(row->description) + " " + sensorPosition(row->pid - start, fourBanks);
}

std::string formatLiveValue(std::string_view message, int selector)
{
    return valueAfter(message, kLiveReply, 1, selector);
}

std::string formatFreezeFrameValue(std::string_view message, int selector)
{
    // The frame number sits between the PID and its data.
    return valueAfter(message, kFreezeReply, 2, selector);
}

} // namespace kvx::link::decode
