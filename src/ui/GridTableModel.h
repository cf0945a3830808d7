#pragma once

#include "session/GridModel.h"

#include <QAbstractTableModel>
#include <QStyledItemDelegate>

namespace kvx::ui {

// Shows a session GridModel in a QTableView. Row 0 of the grid is the heading row: it becomes the
// view's column header, so it stays in sight while the rows scroll; grid row r is table row r - 1.
class GridTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit GridTableModel(GridModel& grid, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    static bool isMarker(const GridCell& cell);

    // The grid row a table row shows, and back.
    static int gridRow(int tableRow) { return tableRow + 1; }
    static int tableRow(int gridRow) { return gridRow - 1; }

private:
    GridModel& grid_;
};

// Draws the tick markers ("þ" ticked, "q" empty, in the symbol font) as check boxes, so they read
// right on machines without that font.
class MarkerDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace kvx::ui
