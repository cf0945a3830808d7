#include "session/RichTextModel.h"

#include <algorithm>

namespace kvx {

RichTextModel::RichTextModel(std::string name, QObject* parent) : QObject(parent), name_(std::move(name)) {}

std::string RichTextModel::text() const
{
    std::string out;
    for (const auto& r : runs_)
        out += r.text;
    return out;
}

void RichTextModel::clear()
{
    runs_.clear();
    caret_ = 0;
    selLength_ = 0;
    emit changed();
}

void RichTextModel::setText(const std::string& text)
{
    runs_.clear();
    if (!text.empty())
        runs_.push_back({text, color_});
    caret_ = 0;
    selLength_ = 0;
    emit changed();
}

void RichTextModel::setCaret(std::size_t pos)
{
    caret_ = std::min(pos, text().size());
    selLength_ = 0;
}

void RichTextModel::moveCaretToEnd()
{
    setCaret(text().size());
}

void RichTextModel::select(std::size_t start, std::size_t length)
{
    std::size_t size = text().size();
    caret_ = std::min(start, size);
    selLength_ = std::min(length, size - caret_);
}

void RichTextModel::erase(std::size_t start, std::size_t length)
{
    std::size_t pos = 0;
    for (auto& r : runs_) {
        std::size_t end = pos + r.text.size();
        if (length > 0 && start < end && start + length > pos) {
            std::size_t from = std::max(start, pos) - pos;
            std::size_t to = std::min(start + length, end) - pos;
            r.text.erase(from, to - from);
            end = pos + r.text.size();
            length -= (to - from);
        }
        pos = end;
    }
}

void RichTextModel::merge()
{
    std::vector<Run> merged;
    for (auto& r : runs_) {
        if (r.text.empty())
            continue;
        if (!merged.empty() && merged.back().color == r.color)
            merged.back().text += r.text;
        else
            merged.push_back(std::move(r));
    }
    runs_ = std::move(merged);
}

void RichTextModel::insertAtCaret(const std::string& text)
{
    erase(caret_, selLength_);
    selLength_ = 0;
    // Split the run that holds the caret and put the new run between the halves.
    std::vector<Run> out;
    std::size_t pos = 0;
    bool placed = false;
    for (auto& r : runs_) {
        std::size_t end = pos + r.text.size();
        if (!placed && caret_ <= end) {
            std::size_t cut = caret_ - pos;
            out.push_back({r.text.substr(0, cut), r.color});
            out.push_back({text, color_});
            out.push_back({r.text.substr(cut), r.color});
            placed = true;
        } else {
            out.push_back(std::move(r));
        }
        pos = end;
    }
    if (!placed)
        out.push_back({text, color_});
    runs_ = std::move(out);
    merge();
    caret_ += text.size();
    emit changed();
}

void RichTextModel::append(const std::string& text)
{
    moveCaretToEnd();
    insertAtCaret(text);
}

} // namespace kvx
