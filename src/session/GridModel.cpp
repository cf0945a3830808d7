#include "session/GridModel.h"

#include <stdexcept>

namespace kvx {

GridModel::GridModel(std::string name, int cols, QObject* parent)
    : QObject(parent), name_(std::move(name)), cols_(cols), cells_(1, std::vector<GridCell>(cols))
{
}

void GridModel::setRows(int rows)
{
    if (rows < 1)
        rows = 1;
    cells_.resize(static_cast<std::size_t>(rows), std::vector<GridCell>(static_cast<std::size_t>(cols_)));
    emit shapeChanged();
}

void GridModel::setCols(int cols)
{
    cols_ = cols;
    for (auto& row : cells_)
        row.resize(static_cast<std::size_t>(cols));
    emit shapeChanged();
}

void GridModel::clear()
{
    cells_.assign(1, std::vector<GridCell>(static_cast<std::size_t>(cols_)));
    emit shapeChanged();
}

GridCell& GridModel::at(int row, int col)
{
    if (row < 0 || row >= rows() || col < 0 || col >= cols_)
        throw std::out_of_range(name_ + ": no cell (" + std::to_string(row) + ", " + std::to_string(col) + ")");
    return cells_[static_cast<std::size_t>(row)][static_cast<std::size_t>(col)];
}

const GridCell& GridModel::cell(int row, int col) const
{
    return const_cast<GridModel*>(this)->at(row, col);
}

void GridModel::setText(int row, int col, const std::string& text)
{
    at(row, col).text = text;
    emit cellChanged(row, col);
}

void GridModel::setColor(int row, int col, Rgb color)
{
    at(row, col).color = color;
    emit cellChanged(row, col);
}

void GridModel::setCell(int row, int col, GridCell cell)
{
    at(row, col) = std::move(cell);
    emit cellChanged(row, col);
}

int GridModel::addRow()
{
    setRows(rows() + 1);
    return rows() - 1;
}

} // namespace kvx
