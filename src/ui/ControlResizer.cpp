#include "ui/ControlResizer.h"

#include <QVariant>
#include <algorithm>
#include <cmath>

namespace kvx::ui {

namespace {

const QString kTagPrefix = QStringLiteral("ZQXRESIZE");

// Qt's own helper widgets (viewports, scroll bars) are named "qt_..." or not at all; only the
// window's named controls are the user's layout.
bool isControl(const QWidget* w)
{
    const QString name = w->objectName();
    return !name.isEmpty() && !name.startsWith(QLatin1String("qt_"));
}

} // namespace

ControlResizer::Flags ControlResizer::flagsForTag(const QString& tag, bool fontResize)
{
    if (!tag.startsWith(kTagPrefix, Qt::CaseInsensitive))
        return {true, true, true, true, fontResize};
    // Flags are upper-case "Y" only; a short tag leaves the missing properties alone.
    auto flag = [&](int pos) { return tag.size() > pos && tag.at(pos) == QLatin1Char('Y'); };
    return {flag(9), flag(10), flag(11), flag(12), flag(13)};
}

void ControlResizer::InitializeResizer(QWidget* window)
{
    const QRect outer = window->frameGeometry();
    ratio_ = outer.width() > 0 ? float(outer.height()) / float(outer.width()) : 0.0f;
    recordedWidth_ = 0.0f;
}

void ControlResizer::record(QWidget* window)
{
    recordedWidth_ = float(window->width());
    recordedHeight_ = float(window->height());
    records_.clear();
    for (QWidget* w : window->findChildren<QWidget*>()) {
        if (!isControl(w))
            continue;
        const QRect g = w->geometry();
        records_.push_back({w, float(g.x()), float(g.y()), float(g.width()), float(g.height()),
                            float(std::max(0.0, w->font().pointSizeF()))});
    }
}

void ControlResizer::FormResized(QWidget* window)
{
    if (recordedWidth_ == 0.0f) {
        record(window);
        return;
    }
    if (resizing_ || window->isMinimized())
        return;
    if (KeepRatio && ratio_ > 0.0f) {
        resizing_ = true;
        const int frameExtra = window->frameGeometry().height() - window->height();
        const int outerHeight = int(std::lround(window->frameGeometry().width() * ratio_));
        window->resize(window->width(), std::max(1, outerHeight - frameExtra));
        resizing_ = false;
    }
    if (recordedHeight_ == 0.0f)
        return;
    const float fx = float(window->width()) / recordedWidth_;
    const float fy = float(window->height()) / recordedHeight_;
    const float ff = fx < fy ? fx : fy;

    for (const Record& r : records_) {
        QWidget* w = r.control;
        if (!w)
            continue;
        const Flags f = flagsForTag(w->property("Tag").toString(), FontResize);
        if (f.font && r.size > 0.0f) {
            QFont font = w->font();
            font.setPointSizeF(std::max(1.0f, ff * r.size));
            w->setFont(font);
        }
        QRect g = w->geometry();
        const int left = f.left ? int(std::lround(fx * r.left)) : g.x();
        const int top = f.top ? int(std::lround(fy * r.top)) : g.y();
        const int width = f.width ? int(std::lround(fx * r.width)) : g.width();
        const int height = f.height ? int(std::lround(fy * r.height)) : g.height();
        w->setGeometry(left, top, width, height);
    }
}

} // namespace kvx::ui
