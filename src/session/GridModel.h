#pragma once

#include "session/Color.h"

#include <QObject>
#include <string>
#include <vector>

namespace kvx {

struct GridCell {
    std::string text;
    Rgb color = kBlack;    // text colour (the marker column uses it as the highlight)
    std::string fontName;  // "" = the grid's font; "Wingdings" for the tick markers
    int fontSize = 0;      // 0 = the grid's size
    bool centered = false;
};

// A grid's contents, owned by the session layer; windows render it, kvx prints it, tests read it.
// Row 0 is the heading row.
class GridModel : public QObject {
    Q_OBJECT
public:
    explicit GridModel(std::string name, int cols = 0, QObject* parent = nullptr);

    const std::string& name() const { return name_; }
    int rows() const { return static_cast<int>(cells_.size()); }
    int cols() const { return cols_; }
    void setRows(int rows);
    void setCols(int cols);
    // Empties the grid to its heading row (kept, but with blank texts).
    void clear();

    const GridCell& cell(int row, int col) const;
    const std::string& text(int row, int col) const { return cell(row, col).text; }
    void setText(int row, int col, const std::string& text);
    void setColor(int row, int col, Rgb color);
    void setCell(int row, int col, GridCell cell);
    // Appends a row and returns its index.
    int addRow();

signals:
    void cellChanged(int row, int col);
    void shapeChanged();

private:
    GridCell& at(int row, int col);

    std::string name_;
    int cols_;
    std::vector<std::vector<GridCell>> cells_;
};

} // namespace kvx
