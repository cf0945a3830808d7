#pragma once

#include <QObject>
#include <string>
#include <vector>

namespace kvx {

// A label's caption (or any single text a window shows).
class TextModel : public QObject {
    Q_OBJECT
public:
    const std::string& text() const { return text_; }
    void setText(const std::string& text)
    {
        text_ = text;
        emit changed();
    }

signals:
    void changed();

private:
    std::string text_;
};

// A drop-down list: its entries and the text it shows (which may be typed, not listed).
class ListModel : public QObject {
    Q_OBJECT
public:
    const std::vector<std::string>& items() const { return items_; }
    const std::string& text() const { return text_; }
    int currentIndex() const { return current_; }

    void clear()
    {
        items_.clear();
        current_ = -1;
        text_.clear();
        emit changed();
    }
    void addItem(const std::string& item)
    {
        items_.push_back(item);
        emit changed();
    }
    void setCurrentIndex(int index)
    {
        current_ = (index >= 0 && index < static_cast<int>(items_.size())) ? index : -1;
        text_ = current_ >= 0 ? items_[static_cast<std::size_t>(current_)] : std::string();
        emit changed();
    }
    // A typed text; selects the entry that matches it, if any.
    void setText(const std::string& text)
    {
        text_ = text;
        current_ = -1;
        for (std::size_t i = 0; i < items_.size(); ++i)
            if (items_[i] == text)
                current_ = static_cast<int>(i);
        emit changed();
    }
    int indexOf(const std::string& item) const
    {
        for (std::size_t i = 0; i < items_.size(); ++i)
            if (items_[i] == item)
                return static_cast<int>(i);
        return -1;
    }

signals:
    void changed();

private:
    std::vector<std::string> items_;
    std::string text_;
    int current_ = -1;
};

// A window timer's design-time state; the window runs a QTimer from it, tests call the tick.
class TimerModel : public QObject {
    Q_OBJECT
public:
    bool enabled() const { return enabled_; }
    int interval() const { return interval_; }
    void setEnabled(bool on)
    {
        enabled_ = on;
        emit changed();
    }
    void setInterval(int ms)
    {
        interval_ = ms;
        emit changed();
    }

signals:
    void changed();

private:
    bool enabled_ = false;
    int interval_ = 1000;
};

// Enabled / visible / checked flags of a control the services switch.
class ControlState : public QObject {
    Q_OBJECT
public:
    bool enabled() const { return enabled_; }
    bool visible() const { return visible_; }
    bool checked() const { return checked_; }
    void setEnabled(bool on)
    {
        enabled_ = on;
        emit changed();
    }
    void setVisible(bool on)
    {
        visible_ = on;
        emit changed();
    }
    void setChecked(bool on)
    {
        checked_ = on;
        emit changed();
    }

signals:
    void changed();

private:
    bool enabled_ = true;
    bool visible_ = true;
    bool checked_ = false;
};

// A slider's value within its range; a value outside the range is refused quietly.
class SliderModel : public QObject {
    Q_OBJECT
public:
    SliderModel(int minimum, int maximum) : min_(minimum), max_(maximum), value_(minimum) {}
    int minimum() const { return min_; }
    int maximum() const { return max_; }
    int value() const { return value_; }
    bool setValue(int v)
    {
        if (v < min_ || v > max_)
            return false;
        value_ = v;
        emit changed();
        return true;
    }

signals:
    void changed();

private:
    int min_, max_, value_;
};

} // namespace kvx
