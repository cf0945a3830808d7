#include "ui/GraphScale.h"

#include <algorithm>
#include <cmath>

namespace kvx::ui {

namespace {

// Switches are drawn at 0 (OFF) and 1 (ON), with room above and below.
constexpr double kSwitchLow = -0.25, kSwitchHigh = 1.25;

// The round step (1, 2, 2.5 or 5 times a power of ten) at least as large as the given one.
double roundStep(double raw)
{
    if (!(raw > 0) || !std::isfinite(raw))
        return 1;
    const double power = std::pow(10.0, std::floor(std::log10(raw)));
    for (double f : {1.0, 2.0, 2.5, 5.0})
        if (f * power >= raw * (1 - 1e-9))
            return f * power;
    return 10 * power;
}

// Decimals that show every multiple of the step exactly (0.25 needs two, 5 none).
int decimalsFor(double step)
{
    int decimals = 0;
    while (decimals < 6 && std::abs(step * std::pow(10.0, decimals) - std::round(step * std::pow(10.0, decimals))) > 1e-6)
        ++decimals;
    return decimals;
}

// The multiples of the step from the first one, read with the step's decimals.
std::vector<ScaleMark> marks(double first, double step, int count)
{
    const int decimals = decimalsFor(step);
    std::vector<ScaleMark> out;
    for (int i = 0; i < count; ++i) {
        // Counted from the step's multiples rather than added up, so no rounding creeps in and
        // zero never reads "-0".
        const double value = (std::round(first / step) + i) * step + 0.0;
        out.push_back({value, QString::number(value, 'f', decimals)});
    }
    return out;
}

} // namespace

Scale valueScale(double low, double high)
{
    const bool positive = low >= 0;
    if (!(high > low)) {
        const double half = std::max(std::abs(high) * 0.1, 1.0);
        low -= half;
        high += half;
    } else {
        const double room = (high - low) * 0.03;
        low -= room;
        high += room;
    }
    if (positive)
        low = std::max(low, 0.0);
    const int steps = kScaleMarks - 1;
    double step = roundStep((high - low) / steps);
    // A scale starting on a round number may end short of the highest value: the next step up.
    for (int i = 0; i < 8; ++i) {
        const double from = std::floor(low / step + 1e-9) * step;
        if (from + step * steps >= high - step * 1e-9)
            break;
        step = roundStep(step * 1.01);
    }
    std::vector<ScaleMark> out = marks(std::floor(low / step + 1e-9) * step, step, kScaleMarks);
    return {out.front().value, out.back().value, std::move(out)};
}

Scale switchScale()
{
    return {kSwitchLow, kSwitchHigh, {{0, QStringLiteral("OFF")}, {1, QStringLiteral("ON")}}};
}

std::vector<ScaleMark> timeMarks(double from, double to, int most)
{
    if (!(to > from) || !std::isfinite(to - from) || most < 1)
        return {};
    // The finest round step that puts no more marks in the range than asked: a step of a
    // (most + 1)th of the range makes at most two too many, so a few coarser ones settle it.
    double step = roundStep((to - from) / (most + 1));
    for (int i = 0; i < 8; ++i, step = roundStep(step * 1.01)) {
        const double first = std::ceil(from / step - 1e-9) * step;
        const int count = static_cast<int>(std::floor((to - first) / step + 1e-9)) + 1;
        if (count <= most)
            return marks(first, step, std::max(count, 0));
    }
    return {};
}

} // namespace kvx::ui
