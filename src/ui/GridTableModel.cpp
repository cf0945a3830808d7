#include "ui/GridTableModel.h"

#include "ui/Bindings.h"

#include <QApplication>
#include <QBrush>
#include <QColor>
#include <QFont>
#include <QPainter>
#include <QStyle>

namespace kvx::ui {

namespace {

const std::string kTicked = "\xC3\xBE"; // "þ" in UTF-8
const std::string kEmpty = "q";
constexpr int kMarkerRole = Qt::UserRole + 1;

} // namespace

GridTableModel::GridTableModel(GridModel& grid, QObject* parent) : QAbstractTableModel(parent), grid_(grid)
{
    connect(&grid_, &GridModel::cellChanged, this, [this](int row, int col) {
        if (row == 0) {
            emit headerDataChanged(Qt::Horizontal, col, col);
            return;
        }
        const QModelIndex i = index(tableRow(row), col);
        emit dataChanged(i, i);
    });
    connect(&grid_, &GridModel::shapeChanged, this, [this] {
        beginResetModel();
        endResetModel();
    });
}

int GridTableModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : grid_.rows() - 1; }
int GridTableModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : grid_.cols(); }

bool GridTableModel::isMarker(const GridCell& cell)
{
    return cell.fontName == "Wingdings" && (cell.text == kTicked || cell.text == kEmpty);
}

QVariant GridTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || gridRow(index.row()) >= grid_.rows() || index.column() >= grid_.cols())
        return {};
    const GridCell& cell = grid_.cell(gridRow(index.row()), index.column());
    const bool marker = isMarker(cell);
    switch (role) {
    case Qt::DisplayRole:
        return marker ? QVariant() : QVariant(QString::fromStdString(cell.text));
    case Qt::ToolTipRole:
        // A reading wider than its column is cut with an ellipsis; the tip shows all of it.
        return marker || cell.text.empty() ? QVariant() : QVariant(QString::fromStdString(cell.text));
    case kMarkerRole:
        return marker ? QVariant(cell.text == kTicked) : QVariant();
    case Qt::ForegroundRole:
        // Black is the plain text, drawn in the palette's text colour like the rest of the view.
        return marker || cell.color == kBlack ? QVariant() : QVariant(QBrush(toQColor(cell.color)));
    case Qt::BackgroundRole:
        return marker && cell.color != kBlack ? QVariant(QBrush(toQColor(cell.color))) : QVariant();
    case Qt::FontRole: {
        if (cell.fontSize == 0 || marker)
            return {};
        QFont font;
        font.setPointSize(cell.fontSize);
        return font;
    }
    case Qt::TextAlignmentRole:
        return cell.centered ? QVariant(Qt::AlignCenter) : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant GridTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= grid_.cols())
        return {};
    if (role == Qt::DisplayRole)
        return QString::fromStdString(grid_.text(0, section));
    return {};
}

Qt::ItemFlags GridTableModel::flags(const QModelIndex& index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
}

void MarkerDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const QVariant ticked = index.data(kMarkerRole);
    if (!ticked.isValid()) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    const QVariant background = index.data(Qt::BackgroundRole);
    if (background.canConvert<QBrush>())
        painter->fillRect(option.rect, background.value<QBrush>());
    QStyleOptionButton box;
    box.palette = option.palette;
    const int side = std::min(option.rect.height(), option.rect.width()) - 6;
    box.rect = QRect(option.rect.center().x() - side / 2, option.rect.center().y() - side / 2, side, side);
    box.state = QStyle::State_Enabled | (ticked.toBool() ? QStyle::State_On : QStyle::State_Off);
    QApplication::style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, painter);
}

} // namespace kvx::ui
