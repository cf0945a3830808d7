#pragma once

#include <string>

namespace kvx {
class GridModel;
class RichTextModel;
} // namespace kvx

namespace kvx::cli {

// A grid as the window shows it: the heading row, then one line per row, columns padded to
// their widest cell and two blanks apart.
std::string GridText(const GridModel& grid);

// A rich-text box's text with plain line ends; colours are dropped.
std::string BoxText(const RichTextModel& box);

} // namespace kvx::cli
