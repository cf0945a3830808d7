#include "support/ProgramWindow.h"
#include "ui/DarkPalette.h"

#include <QHeaderView>
#include <QImage>
#include <QScreen>
#include <QStatusBar>
#include <QTableView>
#include <QTextEdit>
#include <gtest/gtest.h>
#include <map>

using namespace kvx;

namespace {

constexpr const char* kDescriptions = "P0301      Cylinder 1 Misfire Detected\r\n";

// A dark desktop theme for the length of a test.
class DarkTheme {
public:
    DarkTheme() : saved_(test::widgetApp().palette()) { QApplication::setPalette(ui::DarkPalette()); }
    ~DarkTheme() { QApplication::setPalette(saved_); }

private:
    QPalette saved_;
};

// Pixels of a widget's picture that stand out from its most common colour (the background):
// the text a reader can make out.
int legiblePixels(QWidget* widget)
{
    const QImage image = widget->grab().toImage();
    std::map<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            ++counts[image.pixel(x, y)];
    QRgb background = 0;
    int most = 0;
    for (const auto& [rgb, n] : counts)
        if (n > most)
            std::tie(background, most) = std::pair{rgb, n};
    int legible = 0;
    for (const auto& [rgb, n] : counts)
        if (std::abs(qGray(rgb) - qGray(background)) > 100)
            legible += n;
    return legible;
}

int redPixels(QWidget* widget)
{
    const QImage image = widget->grab().toImage();
    int red = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            red += c.red() > 150 && c.green() < 90 && c.blue() < 90;
        }
    return red;
}

QAbstractItemModel* liveView(const test::ProgramWindow& p) { return p.find<QTableView>("GridMode1")->model(); }

bool ticked(const test::ProgramWindow& p, int row) { return p.screen.GridMode1.text(row, 0) != "q"; }

int tickedRows(const test::ProgramWindow& p)
{
    int n = 0;
    for (int row = 1; row < p.screen.GridMode1.rows(); ++row)
        n += ticked(p, row);
    return n;
}

} // namespace

TEST(WindowView, PlainTextAndHeadingsStayReadableOnADarkThemeAndRedStaysRed)
{
    const DarkTheme dark;
    test::ProgramWindow p(kDescriptions);
    ASSERT_TRUE(p.actions.ConnectModule(ModuleGeneric));
    p.showTab(2);
    p.click("cmdMode3");
    auto* codes = p.find<QTextEdit>("txtMode347");
    ASSERT_NE(codes->toPlainText().indexOf("P0301"), -1);
    EXPECT_GT(legiblePixels(codes), 200);

    p.showTab(1);
    p.click("cmdRequestMode2");
    EXPECT_GT(redPixels(p.find<QTextEdit>("txtMode2")), 50);

    p.showTab(0);
    auto* header = p.find<QTableView>("GridMode1")->horizontalHeader();
    EXPECT_GT(legiblePixels(header), 100);
    EXPECT_GT(legiblePixels(p.find<QTableView>("GridMode1")->viewport()), 500);
}

TEST(WindowView, TheLiveGridsHeadingTicksAllRowsStaysInSightAndSpaceTogglesLikeAClick)
{
    test::ProgramWindow p;
    ASSERT_TRUE(p.actions.ConnectModule(ModuleGeneric));
    auto* grid = p.find<QTableView>("GridMode1");
    const int rows = p.screen.GridMode1.rows() - 1;
    ASSERT_GT(rows, 10);
    EXPECT_EQ(tickedRows(p), rows);

    // The heading is the view's header, so scrolling the rows never takes it away.
    grid->scrollToBottom();
    EXPECT_TRUE(grid->horizontalHeader()->isVisible());
    EXPECT_EQ(liveView(p)->headerData(1, Qt::Horizontal).toString(), "PID");
    EXPECT_EQ(liveView(p)->headerData(3, Qt::Horizontal).toString(), "UNIT");

    auto* header = grid->horizontalHeader();
    const QPoint heading(header->sectionViewportPosition(2) + 10, header->height() / 2);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, heading);
    EXPECT_EQ(tickedRows(p), 0);
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, heading);
    EXPECT_EQ(tickedRows(p), rows);

    // The menu does the same, and only while nothing polls; unticking blanks the values.
    p.screen.GridMode1.setText(2, 3, "800 rpm");
    grid->findChild<QAction*>("actUntickAll")->trigger();
    EXPECT_EQ(tickedRows(p), 0);
    EXPECT_EQ(p.screen.GridMode1.text(2, 3), "");
    p.session.Busy = true;
    grid->findChild<QAction*>("actTickAll")->trigger();
    EXPECT_EQ(tickedRows(p), 0);
    p.session.Busy = false;
    grid->findChild<QAction*>("actTickAll")->trigger();
    EXPECT_EQ(tickedRows(p), rows);

    // Space toggles the current row, under the same rule as a click.
    grid->setFocus();
    grid->setCurrentIndex(liveView(p)->index(2, 2));
    QTest::keyClick(grid, Qt::Key_Space);
    EXPECT_FALSE(ticked(p, 3));
    p.session.Busy = true;
    QTest::keyClick(grid, Qt::Key_Space);
    EXPECT_FALSE(ticked(p, 3));
    p.session.Busy = false;
    QTest::keyClick(grid, Qt::Key_Space);
    EXPECT_TRUE(ticked(p, 3));
    // A click on a row's cell is the same toggle.
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(liveView(p)->index(2, 0)).center());
    EXPECT_FALSE(ticked(p, 3));
}

TEST(WindowView, TheLogPlayerNeverCoversTheStatusBarReopensWhereItWasPutAndShowsTheRecordingsTabs)
{
    test::ProgramWindow p;
    ASSERT_TRUE(p.chooseModule(ModuleGeneric));
    p.actions.LogToggled(true);
    p.runFor("cmdRequestMode1", "cmdStop", 10);
    p.actions.LogToggled(false);
    const std::string recording = p.session.LogPath;
    p.toolbar("Disconnect");
    ASSERT_TRUE(p.chooseModule(ModuleToyota));
    p.toolbar("Disconnect");
    ASSERT_EQ(p.find<QTabBar>("TabStrip1")->count(), 2);

    p.toolbar("Log Controller");
    QWidget* player = p.window->logController();
    ASSERT_NE(player, nullptr);
    auto* status = p.find<QStatusBar>("StatusBar1");
    const QRect statusBar(status->mapToGlobal(QPoint(0, 0)), status->size());
    EXPECT_FALSE(player->frameGeometry().intersects(statusBar));
    // The screen has room beside (or below) the window here, so the player covers none of it.
    EXPECT_FALSE(player->frameGeometry().intersects(p.window->frameGeometry()))
        << "player at " << player->x() << "," << player->y();

    const QRect screen = player->screen()->availableGeometry();
    const QPoint put = screen.bottomRight() - QPoint(player->width() + 60, player->height() + 60);
    player->move(put);
    player->close();
    QApplication::processEvents();
    p.toolbar("Log Controller");
    EXPECT_EQ(p.window->logController()->pos(), put);

    // A generic recording is replayed under the generic module's seven tabs, not the last session's.
    auto* reopened = qobject_cast<log::frmLogController*>(p.window->logController());
    reopened->setFileChooser([&] { return QString::fromStdString(recording); });
    reopened->imgOpen_Click();
    EXPECT_EQ(p.find<QTabBar>("TabStrip1")->count(), 7);
    EXPECT_EQ(p.screen.TabStrip1.selectedCaption(), "LIVE DATA");
}
