#pragma once

#include <QObject>
#include <string>
#include <vector>

namespace kvx {

// TabStrip1: the tabs present (caption, tool tip, panel) and the selected one.
class TabStripModel : public QObject {
    Q_OBJECT
public:
    struct Tab {
        std::string caption;
        std::string toolTip;
        std::string panel; // "Frame1" ... "Frame7"
    };

    const std::vector<Tab>& tabs() const { return tabs_; }
    int selected() const { return selected_; }
    std::string selectedCaption() const
    {
        return selected_ >= 0 && selected_ < static_cast<int>(tabs_.size())
                   ? tabs_[static_cast<std::size_t>(selected_)].caption
                   : std::string();
    }
    void clear()
    {
        tabs_.clear();
        selected_ = -1;
        emit changed();
    }
    void add(Tab tab)
    {
        tabs_.push_back(std::move(tab));
        if (selected_ < 0)
            selected_ = 0;
        emit changed();
    }
    void select(int index)
    {
        if (index == selected_)
            return;
        selected_ = index;
        emit selectionChanged(index);
    }
    // Selects the tab with this caption, if present.
    bool selectCaption(const std::string& caption)
    {
        for (std::size_t i = 0; i < tabs_.size(); ++i)
            if (tabs_[i].caption == caption) {
                select(static_cast<int>(i));
                return true;
            }
        return false;
    }

signals:
    void changed();
    void selectionChanged(int index);

private:
    std::vector<Tab> tabs_;
    int selected_ = -1;
};

} // namespace kvx
