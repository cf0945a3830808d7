#include "app/frmAbout.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kvx::app {

frmAbout::frmAbout(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(tr("About"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(32, 24, 32, 20);
    auto* title = new QLabel(QStringLiteral("Korvenatronix OBD-II"), this);
    QFont big = title->font();
    big.setPointSize(big.pointSize() + 6);
    big.setBold(true);
    title->setFont(big);
    title->setAlignment(Qt::AlignCenter);
    auto* version = new QLabel(tr("Version %1").arg(QStringLiteral(KVX_VERSION)), this);
    version->setObjectName(QStringLiteral("lblVersion"));
    version->setAlignment(Qt::AlignCenter);
    auto* what = new QLabel(tr("K-line diagnostics: ISO 9141-2 and ISO 14230"), this);
    what->setAlignment(Qt::AlignCenter);
    auto* ok = new QPushButton(tr("OK"), this);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    layout->addWidget(title);
    layout->addWidget(version);
    layout->addWidget(what);
    layout->addSpacing(12);
    layout->addWidget(ok, 0, Qt::AlignCenter);
}

} // namespace kvx::app
