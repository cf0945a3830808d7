#include "session/ControlModels.h"
#include "session/GridModel.h"
#include "ui/Bindings.h"
#include "ui/GridTableModel.h"
#include "support/WidgetApp.h"

#include <QComboBox>
#include <QImage>
#include <QPainter>
#include <QStyleOptionViewItem>
#include <gtest/gtest.h>

using namespace kvx;

namespace {

GridCell marker(const char* text)
{
    GridCell c;
    c.text = text;
    c.fontName = "Wingdings";
    return c;
}

// Paints one cell through the delegate and counts the drawn pixels (the box and its tick).
int darkPixels(ui::GridTableModel& model, int row, int col)
{
    QImage image(40, 22, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.rect = image.rect();
    option.state = QStyle::State_Enabled;
    ui::MarkerDelegate().paint(&painter, option, model.index(row, col));
    painter.end();
    int dark = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            dark += qGray(image.pixel(x, y)) < 200;
    return dark;
}

} // namespace

TEST(GridTableModel, MarkersAreDrawnAsBoxesNotAsSymbolFontLetters)
{
    test::widgetApp();
    GridModel grid("GridMode1", 5);
    grid.setRows(3);
    grid.setCell(1, 0, marker("\xC3\xBE"));
    grid.setCell(2, 0, marker("q"));
    grid.setText(2, 1, "q"); // an ordinary "q" in another column stays text
    ui::GridTableModel model(grid);

    // Grid rows 1 and 2 are the table's rows 0 and 1: the heading row is the header.
    EXPECT_FALSE(model.data(model.index(0, 0), Qt::DisplayRole).isValid());
    EXPECT_EQ(model.data(model.index(1, 1), Qt::DisplayRole).toString(), "q");
    const int ticked = darkPixels(model, 0, 0);
    const int empty = darkPixels(model, 1, 0);
    EXPECT_GT(empty, 0);
    EXPECT_GT(ticked, empty);

    // The services re-tick a row: the view hears of it.
    int changes = 0;
    QObject::connect(&model, &QAbstractItemModel::dataChanged, [&] { ++changes; });
    grid.setCell(2, 0, marker("\xC3\xBE"));
    EXPECT_EQ(changes, 1);
    EXPECT_GT(darkPixels(model, 1, 0), empty);
}

TEST(GridTableModel, ColoursAndShapeFollowTheGrid)
{
    test::widgetApp();
    GridModel grid("gridMode6", 7);
    grid.setRows(1);
    ui::GridTableModel model(grid);
    int headings = 0;
    QObject::connect(&model, &QAbstractItemModel::headerDataChanged, [&] { ++headings; });
    grid.setText(0, 6, "PASS/FAIL");
    EXPECT_EQ(headings, 1);
    EXPECT_EQ(model.headerData(6, Qt::Horizontal, Qt::DisplayRole).toString(), "PASS/FAIL");
    const int row = grid.addRow();
    EXPECT_EQ(model.rowCount(), 1);
    grid.setText(row, 6, "FAIL");
    grid.setColor(row, 6, kRed);
    const QModelIndex fail = model.index(ui::GridTableModel::tableRow(row), 6);
    EXPECT_EQ(model.data(fail, Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::red));
    // Black text is left to the palette.
    EXPECT_FALSE(model.data(fail.siblingAtColumn(5), Qt::ForegroundRole).isValid());
}

TEST(Bindings, RefillingAListIsNotTakenForAUserChoice)
{
    test::widgetApp();
    ListModel list;
    QComboBox combo;
    ui::bindCombo(list, &combo);
    list.addItem("10");
    list.addItem("18");
    list.setCurrentIndex(1);
    EXPECT_EQ(combo.currentText(), "18");
    list.clear();
    list.addItem("10");
    EXPECT_EQ(list.currentIndex(), -1);
    EXPECT_EQ(combo.count(), 1);
}
