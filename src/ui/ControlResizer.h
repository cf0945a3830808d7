#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <vector>

namespace kvx::ui {

// Keeps a window's controls in proportion when the window is resized: every named control's
// place, size and font size are recorded once and later scaled from those recorded values, so
// repeated resizes never accumulate rounding. A control's "Tag" property can exempt properties.
class ControlResizer {
public:
    bool FontResize = false;
    bool KeepRatio = false;

    // Which of left, top, width, height and font size a tag lets the resizer scale.
    struct Flags {
        bool left, top, width, height, font;
    };
    static Flags flagsForTag(const QString& tag, bool fontResize);

    void InitializeResizer(QWidget* window);
    void FormResized(QWidget* window);

    bool recorded() const { return recordedWidth_ != 0.0f; }

private:
    struct Record {
        QPointer<QWidget> control;
        float left, top, width, height, size;
    };
    void record(QWidget* window);

    float recordedWidth_ = 0.0f;
    float recordedHeight_ = 0.0f;
    float ratio_ = 0.0f;
    bool resizing_ = false;
    std::vector<Record> records_;
};

} // namespace kvx::ui
