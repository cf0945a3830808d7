#include "ui/GraphKey.h"

#include <algorithm>
#include <cmath>

namespace kvx::ui {

KeyLayout layoutKey(const std::vector<QString>& names, const QFontMetricsF& metrics, const QRectF& box)
{
    constexpr double kSwatch = 18, kGap = 6, kBetween = 18, kLeading = 4;
    const double line = metrics.height() + kLeading;
    const double room = std::max(box.width() - kSwatch - kGap, 1.0);
    KeyLayout key;
    double x = box.left(), y = box.top(), row = 0;
    for (const QString& name : names) {
        // A whole pixel more than the text needs, so drawing it never wraps a name that fits.
        QSizeF text(std::ceil(metrics.horizontalAdvance(name)) + 1, metrics.height());
        if (text.width() > room)
            text = QSizeF(room, metrics.boundingRect(QRectF(0, 0, room, 1e6), kKeyTextFlags, name).height());
        const double width = kSwatch + kGap + text.width();
        if (x > box.left() && x + width > box.right()) {
            x = box.left();
            y += row;
            row = 0;
        }
        const double middle = y + line / 2;
        key.entries.push_back({QLineF(x, middle, x + kSwatch, middle),
                               QRectF(QPointF(x + kSwatch + kGap, y + kLeading / 2), text)});
        row = std::max(row, text.height() + kLeading);
        x += width + kBetween;
    }
    key.bottom = y + row;
    return key;
}

} // namespace kvx::ui
