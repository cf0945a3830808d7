#pragma once

#include "session/ControlModels.h"
#include "session/RichTextModel.h"
#include "session/StatusBarModel.h"

#include <QColor>
#include <QPixmap>
#include <array>

class QComboBox;
class QLabel;
class QSlider;
class QStatusBar;
class QTextEdit;
class QTimer;
class QWidget;

namespace kvx::ui {

QColor toQColor(Rgb rgb);

// Each bind* call shows the model's state now and follows every later change; the model must
// outlive the widget.
void bindLabel(TextModel& model, QLabel* label);
void bindCombo(ListModel& model, QComboBox* combo);
void bindSlider(SliderModel& model, QSlider* slider);
void bindTimer(TimerModel& model, QTimer* timer);
void bindControl(ControlState& state, QWidget* widget);
void bindRichText(RichTextModel& model, QTextEdit* edit);

// StatusBar1: panels 1 and 4 are texts, 2 and 3 lamps. Returns the panel labels, in order.
std::array<QLabel*, StatusBarModel::kPanels> bindStatusBar(StatusBarModel& model, QStatusBar* bar);
// The lamp pictures, drawn so that no image file can go missing.
QPixmap lampPixmap(Lamp lamp, int size);

} // namespace kvx::ui
