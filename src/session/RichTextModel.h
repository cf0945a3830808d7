#pragma once

#include "session/Color.h"

#include <QObject>
#include <string>
#include <vector>

namespace kvx {

// A rich-text box: coloured runs of text, a caret and a selection, as the services write to
// them (insert at the caret in the colour in force, move the caret to the end).
class RichTextModel : public QObject {
    Q_OBJECT
public:
    struct Run {
        std::string text;
        Rgb color = kBlack;
    };

    explicit RichTextModel(std::string name, QObject* parent = nullptr);

    const std::string& name() const { return name_; }
    std::string text() const;
    const std::vector<Run>& runs() const { return runs_; }
    std::size_t caret() const { return caret_; }
    std::size_t selectionLength() const { return selLength_; }

    void clear();
    // Replaces everything with one run in the colour in force; the caret goes to the start.
    void setText(const std::string& text);
    void setColor(Rgb color) { color_ = color; }
    Rgb color() const { return color_; }
    void setCaret(std::size_t pos);
    void moveCaretToEnd();
    void select(std::size_t start, std::size_t length);
    // Replaces the selection (usually empty) by the text; the caret moves behind it.
    void insertAtCaret(const std::string& text);
    // Moves the caret to the end and inserts there.
    void append(const std::string& text);

signals:
    void changed();

private:
    void erase(std::size_t start, std::size_t length);
    void merge();

    std::string name_;
    std::vector<Run> runs_;
    std::size_t caret_ = 0;
    std::size_t selLength_ = 0;
    Rgb color_ = kBlack;
};

} // namespace kvx
