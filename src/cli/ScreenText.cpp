#include "cli/ScreenText.h"

#include "session/GridModel.h"
#include "session/RichTextModel.h"

#include <algorithm>

namespace kvx::cli {

std::size_t DisplayWidth(const std::string& text)
{
    // UTF-8 continuation bytes take no column.
    std::size_t width = 0;
    for (unsigned char c : text)
        if ((c & 0xC0) != 0x80)
            ++width;
    return width;
}

std::string PadToWidth(const std::string& text, std::size_t width)
{
    const std::size_t used = DisplayWidth(text);
    return used >= width ? text : text + std::string(width - used, ' ');
}

std::string GridText(const GridModel& grid)
{
    std::vector<std::size_t> widths(static_cast<std::size_t>(grid.cols()), 0);
    for (int r = 0; r < grid.rows(); ++r)
        for (int c = 0; c < grid.cols(); ++c)
            widths[static_cast<std::size_t>(c)] =
                std::max(widths[static_cast<std::size_t>(c)], DisplayWidth(grid.text(r, c)));
    std::string out;
    for (int r = 0; r < grid.rows(); ++r) {
        std::string line;
        for (int c = 0; c < grid.cols(); ++c) {
            const std::string& cell = grid.text(r, c);
            line += c + 1 < grid.cols() ? PadToWidth(cell, widths[static_cast<std::size_t>(c)] + 2) : cell;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out += line + '\n';
    }
    return out;
}

std::string BoxText(const RichTextModel& box)
{
    std::string out;
    const std::string text = box.text();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            continue;
        out += text[i];
    }
    if (!out.empty() && out.back() != '\n')
        out += '\n';
    return out;
}

std::vector<std::string> BoxLines(const RichTextModel& box)
{
    std::vector<std::string> lines;
    const std::string text = BoxText(box);
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = text.find('\n', start);
        const std::string line = text.substr(start, end - start);
        if (line.find_first_not_of(' ') != std::string::npos)
            lines.push_back(line);
        start = end + 1;
    }
    return lines;
}

} // namespace kvx::cli
