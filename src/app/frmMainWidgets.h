#pragma once

#include <QFont>
#include <QRect>
#include <QString>
#include <initializer_list>

class QComboBox;
class QLabel;
class QTableView;
class QTextEdit;
class QWidget;

namespace kvx {
class GridModel;
class ListModel;
class RichTextModel;
}

namespace kvx::app {

// frmMain's design size; the resizer scales everything from it.
inline constexpr int kMainWidth = 920;
inline constexpr int kMainHeight = 640;
// Where the seven service panels sit, below the tab strip.
inline const QRect kFrameRect(8, 76, kMainWidth - 16, kMainHeight - 76 - 80);

// The resizer's instructions for a control.
void tag(QWidget* w, const char* text);

// Controls of the main window bound to their session models.
QTableView* makeGrid(QWidget* parent, const char* name, GridModel& model, QRect geometry);
// The last column takes the rest of the width.
void setColumnWidths(QTableView* view, std::initializer_list<int> widths);
QTextEdit* makeRichText(QWidget* parent, const char* name, RichTextModel& model, QRect geometry);
QComboBox* makeCombo(QWidget* parent, const QString& name, ListModel& model, QRect geometry);
QLabel* makeLabel(QWidget* parent, const QString& name, const QString& text, QRect geometry);
QFont fixedPitch();

} // namespace kvx::app
