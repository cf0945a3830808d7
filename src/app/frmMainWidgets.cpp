#include "app/frmMainWidgets.h"

#include "session/GridModel.h"
#include "session/RichTextModel.h"
#include "ui/Bindings.h"
#include "ui/GridTableModel.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QFontInfo>
#include <QHeaderView>
#include <QLabel>
#include <QTableView>
#include <QTextEdit>

namespace kvx::app {

void tag(QWidget* w, const char* text) { w->setProperty("Tag", QString::fromLatin1(text)); }

QTableView* makeGrid(QWidget* parent, const char* name, GridModel& model, QRect geometry)
{
    auto* view = new QTableView(parent);
    view->setObjectName(QString::fromLatin1(name));
    view->setModel(new ui::GridTableModel(model, view));
    view->setItemDelegate(new ui::MarkerDelegate(view));
    view->verticalHeader()->hide();
    view->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    view->horizontalHeader()->setHighlightSections(false);
    // A new set of rows (another session or module) starts at the top, not where the last one was.
    QObject::connect(view->model(), &QAbstractItemModel::modelReset, view, &QTableView::scrollToTop);
    view->verticalHeader()->setDefaultSectionSize(22);
    view->horizontalHeader()->setStretchLastSection(true);
    view->setSelectionMode(QAbstractItemView::NoSelection);
    view->setGeometry(geometry);
    return view;
}

void setColumnWidths(QTableView* view, std::initializer_list<int> widths)
{
    int column = 0;
    for (int width : widths)
        view->setColumnWidth(column++, width);
}

QTextEdit* makeRichText(QWidget* parent, const char* name, RichTextModel& model, QRect geometry)
{
    auto* edit = new QTextEdit(parent);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setGeometry(geometry);
    ui::bindRichText(model, edit);
    return edit;
}

QComboBox* makeCombo(QWidget* parent, const QString& name, ListModel& model, QRect geometry)
{
    auto* combo = new QComboBox(parent);
    combo->setObjectName(name);
    combo->setGeometry(geometry);
    ui::bindCombo(model, combo);
    return combo;
}

QFont fixedPitch()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    font.setPointSize(10);
    if (QFontInfo(font).fixedPitch())
        return font;
    // The system's fixed font is only a name ("monospace") that some font set-ups give to a
    // proportional face, and the hints do not overrule that: take a face that is fixed-pitch.
    for (const QString& family : QFontDatabase::families()) {
        if (!QFontDatabase::isFixedPitch(family))
            continue;
        QFont candidate = font;
        candidate.setFamilies({family});
        if (QFontInfo(candidate).fixedPitch())
            return candidate;
    }
    return font;
}

QLabel* makeLabel(QWidget* parent, const QString& name, const QString& text, QRect geometry)
{
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setGeometry(geometry);
    return label;
}

} // namespace kvx::app
