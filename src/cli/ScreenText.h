#pragma once

#include <string>
#include <vector>

namespace kvx {
class GridModel;
class RichTextModel;
} // namespace kvx

namespace kvx::cli {

// Columns a text takes on a terminal: one per character, so "°C" is two, not three bytes' worth.
std::size_t DisplayWidth(const std::string& text);

// The text with blanks on the right up to width columns (never cut).
std::string PadToWidth(const std::string& text, std::size_t width);

// A grid as the window shows it: the heading row, then one line per row, columns padded to
// their widest cell and two blanks apart.
std::string GridText(const GridModel& grid);

// A rich-text box's text with plain line ends; colours are dropped.
std::string BoxText(const RichTextModel& box);

// The box's lines without their line ends, blank lines left out.
std::vector<std::string> BoxLines(const RichTextModel& box);

} // namespace kvx::cli
