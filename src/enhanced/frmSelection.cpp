#include "enhanced/frmSelection.h"

#include "data/TabLayout.h"
#include "session/MainScreen.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace kvx::enhanced {

namespace {

const std::array<const char*, 4> kCaptions = {"OBD II GENERIC", "NISSAN ENGINE", "NISSAN AUTO TRANSMISSION",
                                              "TOYOTA ENGINE"};

} // namespace

frmSelection::frmSelection(MainScreen& screen, ConnectModule connect, QWidget* parent)
    : QDialog(parent), screen_(screen), connect_(std::move(connect))
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
        button->setMinimumSize(300, 44);
        button->setAutoDefault(false);
        QObject::connect(button, &QPushButton::clicked, this, [this, i] { Command1_Click(i); });
        layout->addWidget(button);
        buttons_[std::size_t(i)] = button;
    }
    enableButtons(true);
}

void frmSelection::enableButtons(bool on)
{
    for (QPushButton* button : buttons_)
        button->setEnabled(on && bool(connect_));
}

void frmSelection::Command1_Click(int index)
{
    screen_.StatusBar1.setText(1, "INIT IN PROGRESS...");
    data::ClearTabs(screen_);
    if (index < 0 || index > 3 || !connect_) {
        accept();
        return;
    }
    lastTried_ = index;
    data::BuildTabs(screen_, data::ModuleTabs(index));
    // A second click while the first attempt pumps events would start a second connection.
    enableButtons(false);
    const bool connected = connect_(index);
    enableButtons(true);
    if (connected) {
        accept();
        return;
    }
    data::ClearTabs(screen_);
}

void frmSelection::reject()
{
    // Closed without a connection after a failed try: the main window gets the tabs and panels of
    // the module last tried back, rather than staying blank.
    if (lastTried_ >= 0 && screen_.TabStrip1.tabs().empty())
        data::BuildTabs(screen_, data::ModuleTabs(lastTried_));
    QDialog::reject();
}

} // namespace kvx::enhanced
