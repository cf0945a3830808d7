#pragma once

#include <QObject>
#include <array>
#include <string>

namespace kvx {

enum class Lamp { None, Green, Black };

// The four panels of StatusBar1, counted from 1: 1 progress text, 2 port light, 3 activity
// lamp, 4 the description count.
class StatusBarModel : public QObject {
    Q_OBJECT
public:
    static constexpr int kPanels = 4;

    const std::string& text(int panel) const { return texts_.at(static_cast<std::size_t>(panel - 1)); }
    Lamp lamp(int panel) const { return lamps_.at(static_cast<std::size_t>(panel - 1)); }
    void setText(int panel, const std::string& text)
    {
        texts_.at(static_cast<std::size_t>(panel - 1)) = text;
        emit changed(panel);
    }
    void setLamp(int panel, Lamp lamp)
    {
        lamps_.at(static_cast<std::size_t>(panel - 1)) = lamp;
        emit changed(panel);
    }

signals:
    void changed(int panel);

private:
    std::array<std::string, kPanels> texts_{};
    std::array<Lamp, kPanels> lamps_{Lamp::None, Lamp::Black, Lamp::Black, Lamp::None};
};

} // namespace kvx
