#include "app/frmGraph.h"

#include "data/GraphFeed.h"
#include "link/LinkSession.h"
#include "log/LinkReplay.h"
#include "log/LogController.h"
#include "log/LogFile.h"
#include "log/LogGraph.h"
#include "session/GridModel.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"
#include "ui/GraphChart.h"

#include <QComboBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QSaveFile>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

namespace kvx::app {

namespace {

// Often enough to look live, seldom enough that eight busy lines leave the event loop free.
constexpr int kRedrawMs = 250;
const QString kTitle = QStringLiteral("Graph");

} // namespace

frmGraph::frmGraph(Session& session, QWidget* parent)
    : QWidget(parent, Qt::Window), session_(session), decoding_(log::LinkLiveDecoding(session.link))
{
    setObjectName(QStringLiteral("frmGraph"));
    setWindowTitle(kTitle);
    resize(900, 560);
    liveOrigin_ = session_.link.clock().now();
    feed_ = std::make_unique<data::GraphFeed>(session_.screen.GridMode1, model_, [this] { return now(); });
    // A grid laid out anew is a new run: its time starts at zero.
    connect(&session_.screen.GridMode1, &GridModel::shapeChanged, this, [this] {
        liveOrigin_ = session_.link.clock().now();
        replayTimed_ = false;
    });

    lstItems_ = new QListWidget(this);
    lstItems_->setObjectName(QStringLiteral("lstItems"));
    lstItems_->setMaximumWidth(240);
    cmbUnits_ = new QComboBox(this);
    cmbUnits_->setObjectName(QStringLiteral("cmbUnits"));
    cmbUnits_->addItems({QStringLiteral("Metric"), QStringLiteral("US")});
    auto button = [this](const char* name, const QString& caption) {
        auto* b = new QPushButton(caption, this);
        b->setObjectName(QString::fromLatin1(name));
        return b;
    };
    cmdPause_ = button("cmdPause", QStringLiteral("Pause"));
    cmdPause_->setCheckable(true);
    cmdFollow_ = button("cmdFollow", QStringLiteral("Newest"));
    cmdWhole_ = button("cmdWhole", QStringLiteral("Whole run"));
    cmdSavePicture_ = button("cmdSavePicture", QStringLiteral("Save picture"));
    cmdSaveData_ = button("cmdSaveData", QStringLiteral("Save data"));
    chart_ = new ui::GraphChart(model_, this);

    auto* bar = new QHBoxLayout;
    bar->addWidget(new QLabel(QStringLiteral("Units"), this));
    bar->addWidget(cmbUnits_);
    for (QPushButton* b : {cmdPause_, cmdFollow_, cmdWhole_})
        bar->addWidget(b);
    bar->addStretch();
    bar->addWidget(cmdSavePicture_);
    bar->addWidget(cmdSaveData_);
    auto* side = new QVBoxLayout;
    side->addWidget(new QLabel(QStringLiteral("Items (up to 8)"), this));
    side->addWidget(lstItems_);
    auto* body = new QHBoxLayout;
    body->addLayout(side);
    body->addWidget(chart_, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(bar);
    layout->addLayout(body, 1);

    choosePicture_ = [this] {
        return QFileDialog::getSaveFileName(this, QStringLiteral("Save picture"), QString(),
                                            QStringLiteral("PNG picture (*.png)"));
    };
    chooseData_ = [this] {
        return QFileDialog::getSaveFileName(this, QStringLiteral("Save data"), QString(),
                                            QStringLiteral("CSV file (*.csv)"));
    };

    connect(&model_, &GraphModel::layoutChanged, this, &frmGraph::listItems);
    connect(&model_, &GraphModel::pointsChanged, this, [this] { dirty_ = true; });
    connect(lstItems_, &QListWidget::itemChanged, this, &frmGraph::pickFromList);
    connect(cmbUnits_, &QComboBox::currentIndexChanged, this, [this](int index) { model_.setUs(index == 1); });
    // Paused, the picture stays where it is (pan and zoom still move it) while values are kept;
    // resumed, it follows the newest values again if it did before.
    connect(cmdPause_, &QPushButton::toggled, this, [this](bool paused) {
        if (paused) {
            chart_->hold();
            return;
        }
        dirty_ = false;
        chart_->release();
    });
    connect(cmdFollow_, &QPushButton::clicked, chart_, &ui::GraphChart::follow);
    connect(cmdWhole_, &QPushButton::clicked, chart_, &ui::GraphChart::showAll);
    connect(cmdSavePicture_, &QPushButton::clicked, this, &frmGraph::savePicture);
    connect(cmdSaveData_, &QPushButton::clicked, this, &frmGraph::saveData);
    tmrRedraw_ = new QTimer(this);
    connect(tmrRedraw_, &QTimer::timeout, this, [this] {
        if (dirty_ && !cmdPause_->isChecked())
            refresh();
    });
    tmrRedraw_->start(kRedrawMs);
    listItems();
}

frmGraph::~frmGraph() = default;

void frmGraph::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!placed_) {
        placed_ = true;
        place();
    }
}

void frmGraph::place()
{
    QWidget* main = parentWidget() ? parentWidget()->window() : nullptr;
    if (!main || !main->isVisible() || !screen())
        return;
    const QRect avail = main->screen()->availableGeometry();
    const QRect outer = main->frameGeometry();
    // The window manager's frame, as the main window has it.
    const QSize frame = outer.size() - main->geometry().size();
    resize(size().boundedTo(avail.size() - frame));
    const QSize size = this->size() + frame;
    constexpr int gap = 8;
    for (const QPoint& at : {QPoint(outer.right() + 1 + gap, outer.top()),
                             QPoint(outer.left() - gap - size.width(), outer.top()),
                             QPoint(outer.left(), outer.bottom() + 1 + gap)}) {
        if (avail.contains(QRect(at, size))) {
            move(at);
            return;
        }
    }
    const QPoint over = outer.topLeft() + QPoint(48, 48);
    move(std::clamp(over.x(), avail.left(), std::max(avail.left(), avail.right() + 1 - size.width())),
         std::clamp(over.y(), avail.top(), std::max(avail.top(), avail.bottom() + 1 - size.height())));
}

double frmGraph::now() const
{
    if (session_.Replaying)
        return replayTime_;
    return static_cast<double>(session_.link.clock().now() - liveOrigin_) / 1e6;
}

void frmGraph::followPlayer(log::LogController& player)
{
    connect(&player, &log::LogController::frameShown, this, [this](double t, bool timed) {
        // A frame too long to carry its time, in a log with times, keeps the time before it
        // rather than being drawn at its number.
        if (timed || !replayTimed_)
            replayTime_ = t;
        replayTimed_ = replayTimed_ || timed;
        chart_->setTimeTitle(replayTimed_ ? QStringLiteral("Time (s)") : QStringLiteral("Frame"));
    });
    connect(&player, &log::LogController::playStarted, this, [this, &player] {
        if (player.speed() != 0)
            return;
        // No delay: the whole log at once, rather than a line crawling as fast as the grid goes.
        feed_->setHeld(true);
        try {
            const bool timed = log::LoadLogIntoGraph(player.path(), decoding_, model_).timed;
            chart_->setTimeTitle(timed ? QStringLiteral("Time (s)") : QStringLiteral("Frame"));
        } catch (const log::LogError& e) {
            session_.shell.messageBox(kTitle.toStdString(), e.what(), MessageIcon::Exclamation);
        }
        chart_->showAll();
        refresh();
    });
    connect(&player, &log::LogController::playEnded, this, [this] { feed_->setHeld(false); });
}

void frmGraph::listItems()
{
    const QSignalBlocker quiet(lstItems_);
    lstItems_->clear();
    const std::vector<std::string> plotted = model_.plotted();
    for (const GraphModel::Item& item : model_.items()) {
        auto* row = new QListWidgetItem(QString::fromStdString(item.id + "  " + item.label), lstItems_);
        row->setData(Qt::UserRole, QString::fromStdString(item.id));
        row->setFlags(item.numeric ? Qt::ItemIsEnabled | Qt::ItemIsUserCheckable : Qt::NoItemFlags);
        const bool on = std::find(plotted.begin(), plotted.end(), item.id) != plotted.end();
        row->setCheckState(on ? Qt::Checked : Qt::Unchecked);
    }
    dirty_ = true;
}

void frmGraph::pickFromList()
{
    std::vector<std::string> ids = model_.plotted();
    // Items keep the order they were picked in, so each keeps its colour and scale side.
    for (int i = 0; i < lstItems_->count(); ++i) {
        const std::string id = lstItems_->item(i)->data(Qt::UserRole).toString().toStdString();
        const bool on = lstItems_->item(i)->checkState() == Qt::Checked;
        const auto at = std::find(ids.begin(), ids.end(), id);
        if (!on && at != ids.end())
            ids.erase(at);
        else if (on && at == ids.end())
            ids.push_back(id);
    }
    model_.setPlotted(ids);
}

void frmGraph::refresh()
{
    dirty_ = false;
    chart_->redraw();
}

void frmGraph::savePicture()
{
    const QString path = choosePicture_();
    if (path.isEmpty())
        return;
    refresh();
    if (!chart_->grab().save(path, "PNG"))
        session_.shell.messageBox(kTitle.toStdString(), "Cannot write " + path.toStdString() + ".",
                                  MessageIcon::Exclamation);
}

void frmGraph::saveData()
{
    const QString path = chooseData_();
    if (path.isEmpty())
        return;
    const std::string csv = model_.csv();
    QSaveFile out(path);
    const auto size = static_cast<qint64>(csv.size());
    if (!out.open(QIODevice::WriteOnly) || out.write(csv.data(), size) != size || !out.commit())
        session_.shell.messageBox(kTitle.toStdString(),
                                  "Cannot write " + path.toStdString() + ": " + out.errorString().toStdString(),
                                  MessageIcon::Exclamation);
}

} // namespace kvx::app
