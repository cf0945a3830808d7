#pragma once

#include "session/GridModel.h"

#include <QAbstractTableModel>
#include <QStyledItemDelegate>

namespace kvx::ui {

// Shows a session GridModel in a QTableView: row 0 of the model is the heading row and is shown
// as the first table row (fixed, grey), as the services write it.
class GridTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit GridTableModel(GridModel& grid, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    static bool isMarker(const GridCell& cell);

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
