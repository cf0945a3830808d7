#pragma once

#include <QFontMetricsF>
#include <QLineF>
#include <QRectF>
#include <QString>
#include <vector>

namespace kvx::ui {

// One entry of the key: a stroke of the item's colour and its name beside it.
struct KeyEntry {
    QLineF swatch;
    QRectF name; // the name's box; a name longer than a row is wrapped over several lines in it
};

struct KeyLayout {
    std::vector<KeyEntry> entries;
    double bottom = 0;
};

// Places the names left to right from the top left corner of the given box, starting a new row
// where the next name no longer fits, so every name is shown in full whatever the width.
KeyLayout layoutKey(const std::vector<QString>& names, const QFontMetricsF& metrics, const QRectF& box);

// How a wrapped name is drawn into its box.
constexpr int kKeyTextFlags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap;

} // namespace kvx::ui
