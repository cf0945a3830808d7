#include "ui/ControlResizer.h"
#include "support/WidgetApp.h"

#include <QLabel>
#include <gtest/gtest.h>

using kvx::ui::ControlResizer;

namespace {

struct Window {
    QApplication& application = kvx::test::widgetApp();
    QWidget form;
    QLabel* free;
    QLabel* fixed;
    ControlResizer resizer;

    Window()
    {
        form.resize(400, 300);
        free = add("free", QRect(40, 30, 100, 20), {});
        fixed = add("fixed", QRect(10, 10, 50, 20), "ZQXRESIZEXXXXX");
        resizer.FontResize = true;
        resizer.InitializeResizer(&form);
        resizer.FormResized(&form);
    }
    QLabel* add(const char* name, QRect g, const char* tag)
    {
        auto* l = new QLabel(&form);
        l->setObjectName(QString::fromLatin1(name));
        l->setGeometry(g);
        QFont f = l->font();
        f.setPointSizeF(10);
        l->setFont(f);
        if (tag)
            l->setProperty("Tag", QString::fromLatin1(tag));
        return l;
    }
    void resizeTo(int w, int h)
    {
        form.resize(w, h);
        resizer.FormResized(&form);
    }
};

} // namespace

TEST(ResizeTag, PrefixIsCaseBlindButFlagsAreUpperCaseY)
{
    const auto tagged = ControlResizer::flagsForTag("zqxresizeYYYXY", false);
    EXPECT_TRUE(tagged.left && tagged.top && tagged.width && tagged.font);
    EXPECT_FALSE(tagged.height);

    const auto lower = ControlResizer::flagsForTag("ZQXRESIZEyyyxy", true);
    EXPECT_FALSE(lower.left || lower.top || lower.width || lower.height || lower.font);

    const auto zero = ControlResizer::flagsForTag("ZQXRESIZEYY0YY", false);
    EXPECT_TRUE(zero.left && zero.top && zero.height && zero.font);
    EXPECT_FALSE(zero.width);

    // A short tag scales only what it names; other tags follow FontResize for the font.
    const auto shortTag = ControlResizer::flagsForTag("ZQXRESIZEY", true);
    EXPECT_TRUE(shortTag.left);
    EXPECT_FALSE(shortTag.top || shortTag.font);
    EXPECT_FALSE(ControlResizer::flagsForTag("something", false).font);
    EXPECT_TRUE(ControlResizer::flagsForTag("", true).font);
}

TEST(ControlResizer, ScalesFromRecordedValuesAndLeavesExemptControlsAlone)
{
    Window w;
    w.resizeTo(800, 450);
    EXPECT_EQ(w.free->geometry(), QRect(80, 45, 200, 30));
    EXPECT_DOUBLE_EQ(w.free->font().pointSizeF(), 15.0); // the smaller factor, 1.5
    EXPECT_EQ(w.fixed->geometry(), QRect(10, 10, 50, 20));
    EXPECT_DOUBLE_EQ(w.fixed->font().pointSizeF(), 10.0);

    // Many odd sizes, then the recorded size: everything is exactly where it was.
    for (int i = 0; i < 7; ++i)
        w.resizeTo(333 + i * 37, 211 + i * 29);
    w.resizeTo(400, 300);
    EXPECT_EQ(w.free->geometry(), QRect(40, 30, 100, 20));
    EXPECT_DOUBLE_EQ(w.free->font().pointSizeF(), 10.0);
    EXPECT_EQ(w.fixed->geometry(), QRect(10, 10, 50, 20));
}

TEST(ControlResizer, TagIsReadAtEachResizeAndMinimisedWindowIsLeftAlone)
{
    Window w;
    w.free->setProperty("Tag", QStringLiteral("ZQXRESIZEYYYXY"));
    w.resizeTo(800, 600);
    EXPECT_EQ(w.free->geometry(), QRect(80, 60, 200, 20)); // height kept

    const QRect before = w.free->geometry();
    w.form.setWindowState(Qt::WindowMinimized);
    w.form.resize(100, 100);
    w.resizer.FormResized(&w.form);
    EXPECT_EQ(w.free->geometry(), before);
}

TEST(ControlResizer, KeepRatioHoldsTheRecordedShape)
{
    Window w;
    w.resizer.KeepRatio = true;
    w.resizeTo(800, 100);
    EXPECT_EQ(w.form.height(), 600);
    EXPECT_EQ(w.free->geometry(), QRect(80, 60, 200, 40));
}
