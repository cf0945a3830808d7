#include "ui/Bindings.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QPainter>
#include <QSignalBlocker>
#include <QSlider>
#include <QStatusBar>
#include <QTextCursor>
#include <QTextEdit>
#include <QTimer>

namespace kvx::ui {

QColor toQColor(Rgb rgb) { return QColor((rgb >> 16) & 0xFF, (rgb >> 8) & 0xFF, rgb & 0xFF); }

void bindLabel(TextModel& model, QLabel* label)
{
    auto show = [&model, label] { label->setText(QString::fromStdString(model.text())); };
    show();
    QObject::connect(&model, &TextModel::changed, label, show);
}

void bindCombo(ListModel& model, QComboBox* combo)
{
    auto show = [&model, combo] {
        // Refilling must not echo back into the model as a user choice.
        const QSignalBlocker block(combo);
        combo->clear();
        for (const std::string& item : model.items())
            combo->addItem(QString::fromStdString(item));
        if (model.currentIndex() >= 0)
            combo->setCurrentIndex(model.currentIndex());
        else if (combo->isEditable())
            combo->setEditText(QString::fromStdString(model.text()));
        else
            combo->setCurrentIndex(-1);
    };
    show();
    QObject::connect(&model, &ListModel::changed, combo, show);
    QObject::connect(combo, &QComboBox::activated, &model, [&model](int index) { model.setCurrentIndex(index); });
}

void bindSlider(SliderModel& model, QSlider* slider)
{
    auto show = [&model, slider] {
        const QSignalBlocker block(slider);
        slider->setRange(model.minimum(), model.maximum());
        slider->setValue(model.value());
    };
    show();
    QObject::connect(&model, &SliderModel::changed, slider, show);
    QObject::connect(slider, &QSlider::valueChanged, &model, [&model](int value) { model.setValue(value); });
}

void bindTimer(TimerModel& model, QTimer* timer)
{
    auto show = [&model, timer] {
        timer->setInterval(std::max(1, model.interval()));
        if (model.enabled() && !timer->isActive())
            timer->start();
        else if (!model.enabled())
            timer->stop();
    };
    show();
    QObject::connect(&model, &TimerModel::changed, timer, show);
}

void bindControl(ControlState& state, QWidget* widget)
{
    auto show = [&state, widget] {
        widget->setEnabled(state.enabled());
        widget->setVisible(state.visible());
        if (auto* button = qobject_cast<QAbstractButton*>(widget); button && button->isCheckable()) {
            const QSignalBlocker block(button);
            button->setChecked(state.checked());
        }
    };
    show();
    QObject::connect(&state, &ControlState::changed, widget, show);
}

void bindRichText(RichTextModel& model, QTextEdit* edit)
{
    edit->setReadOnly(true);
    auto show = [&model, edit] {
        edit->clear();
        QTextCursor cursor(edit->document());
        for (const RichTextModel::Run& run : model.runs()) {
            // Black is the services' plain text: it takes the palette's text colour, so a dark
            // theme keeps it readable; other colours are shown as they are.
            QTextCharFormat format;
            if (run.color != kBlack)
                format.setForeground(toQColor(run.color));
            cursor.insertText(QString::fromStdString(run.text), format);
        }
        edit->moveCursor(QTextCursor::End);
    };
    show();
    QObject::connect(&model, &RichTextModel::changed, edit, show);
}

QPixmap lampPixmap(Lamp lamp, int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    if (lamp == Lamp::None)
        return pixmap;
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor fill = lamp == Lamp::Green ? QColor(0x20, 0xD0, 0x20) : QColor(0x20, 0x20, 0x20);
    painter.setPen(QPen(QColor(0x60, 0x60, 0x60), 1));
    painter.setBrush(fill);
    painter.drawEllipse(QRectF(1.5, 1.5, size - 3, size - 3));
    return pixmap;
}

std::array<QLabel*, StatusBarModel::kPanels> bindStatusBar(StatusBarModel& model, QStatusBar* bar)
{
    std::array<QLabel*, StatusBarModel::kPanels> panels{};
    for (int i = 0; i < StatusBarModel::kPanels; ++i) {
        auto* label = new QLabel(bar);
        label->setObjectName(QStringLiteral("StatusBar1Panel%1").arg(i + 1));
        label->setFrameShape(QFrame::StyledPanel);
        label->setFrameShadow(QFrame::Sunken);
        label->setMinimumWidth(i == 1 || i == 2 ? 28 : 120);
        label->setAlignment(i == 1 || i == 2 ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignVCenter);
        if (i == 0)
            bar->addWidget(label, 1);
        else
            bar->addPermanentWidget(label);
        panels[std::size_t(i)] = label;
    }
    auto show = [&model, panels](int panel) {
        QLabel* label = panels[std::size_t(panel - 1)];
        if (panel == 2 || panel == 3)
            label->setPixmap(lampPixmap(model.lamp(panel), 14));
        else
            label->setText(QString::fromStdString(model.text(panel)));
    };
    for (int p = 1; p <= StatusBarModel::kPanels; ++p)
        show(p);
    QObject::connect(&model, &StatusBarModel::changed, bar, show);
    return panels;
}

} // namespace kvx::ui
