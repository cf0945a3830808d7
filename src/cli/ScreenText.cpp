#include "cli/ScreenText.h"

#include "session/GridModel.h"
#include "session/RichTextModel.h"

#include <vector>

namespace kvx::cli {

namespace {

// Display width in characters: UTF-8 continuation bytes take no column.
std::size_t Width(const std::string& text)
{
    std::size_t width = 0;
    for (unsigned char c : text)
        if ((c & 0xC0) != 0x80)
            ++width;
    return width;
}

} // namespace

std::string GridText(const GridModel& grid)
{
    std::vector<std::size_t> widths(static_cast<std::size_t>(grid.cols()), 0);
    for (int r = 0; r < grid.rows(); ++r)
        for (int c = 0; c < grid.cols(); ++c)
            widths[static_cast<std::size_t>(c)] = std::max(widths[static_cast<std::size_t>(c)], Width(grid.text(r, c)));
    std::string out;
    for (int r = 0; r < grid.rows(); ++r) {
        std::string line;
        for (int c = 0; c < grid.cols(); ++c) {
            const std::string& cell = grid.text(r, c);
            line += cell;
            if (c + 1 < grid.cols())
                line.append(widths[static_cast<std::size_t>(c)] - Width(cell) + 2, ' ');
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

} // namespace kvx::cli
