#include "enhanced/frmSelection.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace kvx::enhanced {

namespace {

const std::array<const char*, 4> kCaptions = {"OBD II GENERIC", "NISSAN ENGINE", "NISSAN AUTO TRANSMISSION",
                                              "TOYOTA ENGINE"};
// Tabs per module, in tab order: live data, freeze frame, faults, O2, monitoring, info, combo.
const std::array<std::array<bool, 7>, 4> kTabs = {{
    {true, true, true, true, true, true, true},
    {true, false, false, false, false, false, false},
    {true, false, false, false, false, false, false},
    {true, false, false, false, false, false, true},
}};

} // namespace

frmSelection::frmSelection(Hooks hooks, QWidget* parent) : QDialog(parent), hooks_(std::move(hooks))
{
    setObjectName(QStringLiteral("frmSelection"));
    setWindowTitle(QStringLiteral("ECU SELECTION"));
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(10);
    layout->setContentsMargins(24, 20, 24, 20);
    for (int i = 0; i < 4; ++i) {
        auto* button = new QPushButton(QString::fromLatin1(kCaptions[std::size_t(i)]), this);
        button->setObjectName(QStringLiteral("Command1"));
        button->setProperty("Index", i);
        button->setMinimumSize(280, 44);
        button->setAutoDefault(false);
        button->setEnabled(hooks_.available[std::size_t(i)] && bool(hooks_.connect));
        connect(button, &QPushButton::clicked, this, [this, i] { Command1_Click(i); });
        layout->addWidget(button);
        buttons_[std::size_t(i)] = button;
    }
}

void frmSelection::Command1_Click(int index)
{
    if (hooks_.status)
        hooks_.status("INIT IN PROGRESS...");
    if (hooks_.clearMain)
        hooks_.clearMain();
    if (index < 0 || index > 3 || !hooks_.connect) {
        accept();
        return;
    }
    for (QPushButton* b : buttons_)
        b->setEnabled(false);
    if (hooks_.buildTabs)
        hooks_.buildTabs(kTabs[std::size_t(index)]);
    const bool connected = hooks_.connect(index);
    for (int i = 0; i < 4; ++i)
        buttons_[std::size_t(i)]->setEnabled(hooks_.available[std::size_t(i)]);
    if (connected) {
        accept();
        return;
    }
    if (hooks_.clearMain)
        hooks_.clearMain();
}

} // namespace kvx::enhanced
