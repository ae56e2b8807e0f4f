#include "ui/pages/system/SystemDataView.h"

#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/files/NodeActions.h"
#include "ui/pages/system/SystemDataRow.h"
#include "ui/widgets/PageHeader.h"
#include "ui/widgets/ScanningRing.h"
#include "ui/widgets/StatTile.h"
#include "ui/widgets/SymbolView.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QShowEvent>
#include <QVBoxLayout>

namespace dorvik {

namespace {

// Takes every row out of `list`, widgets and all.
void clear(QVBoxLayout* list) {
    while (QLayoutItem* item = list->takeAt(0)) {
        delete item->widget();
        delete item;
    }
}

// The line between two components, in the colour of the appearance in force.
class Divider : public QWidget {
public:
    Divider() { setFixedHeight(1); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), Style::faded(palette().color(QPalette::WindowText), 0.4 * 0.3));
    }
};

QWidget* section(const QString& title, QWidget* content) {
    auto* box = new QWidget;
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::gap);
    layout->addWidget(Style::label(title, Style::TextRole::headline));
    layout->addWidget(content);
    return box;
}

QFrame* card() {
    auto* frame = new QFrame;
    Style::makeCard(frame);
    return frame;
}

} // namespace

SystemDataView::SystemDataView(AppState& state, QWidget* parent)
    : Page(tr("System Data"),
           tr("What macOS lumps together as “System Data” in Storage settings, explained piece "
              "by piece."),
           parent),
      state_(state) {
    auto* refresh = new QPushButton(tr("Refresh"));
    connect(refresh, &QPushButton::clicked, &state_.systemData(), &SystemDataState::refresh);
    header()->addTrailing(refresh);

    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, Style::gap, 0);
    column->setSpacing(Style::sectionGap + 4);
    column->addWidget(makeTiles());
    column->addWidget(section(tr("Components"), makeComponents()));
    column->addWidget(section(tr("Time Machine local snapshots"), makeSnapshots()));
    column->addStretch(1);

    auto* scroll = new QScrollArea;
    scroll->setProperty("page", true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(content);
    body()->addWidget(scroll, 1);

    SystemDataState& systemData = state_.systemData();
    connect(&systemData, &SystemDataState::changed, this, [this] {
        showTiles();
        showComponents();
        showSnapshots();
    });
    connect(&systemData, &SystemDataState::snapshotMessageChanged, this,
            &SystemDataView::showSnapshotMessage);
    connect(&state_, &AppState::volumeChanged, this, &SystemDataView::showTiles);
    showTiles();
    showComponents();
    showSnapshots();
    showSnapshotMessage();
}

void SystemDataView::changeEvent(QEvent* event) {
    Page::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        showSnapshotMessage(); // its amber follows the appearance
    }
}

void SystemDataView::showEvent(QShowEvent* event) {
    Page::showEvent(event);
    // Each visit reads afresh; a window coming back from the taskbar is no visit.
    if (!event->spontaneous()) {
        state_.systemData().refresh();
    }
}

std::vector<StatTile*> SystemDataView::tiles() const {
    std::vector<StatTile*> shown;
    for (StatTile* tile : {purgeable_, snapshotCount_, measured_}) {
        if (tileRow_->isVisibleTo(this) && tile->isVisibleTo(this)) {
            shown.push_back(tile);
        }
    }
    return shown;
}

QWidget* SystemDataView::makeTiles() {
    tileRow_ = new QWidget;
    auto* row = new QHBoxLayout(tileRow_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Style::gap + 4);
    purgeable_ = new StatTile(tr("Purgeable"), "icloud.and.arrow.down.fill", Style::Tint::accent,
                              tr("macOS frees this on its own when space runs low."));
    snapshotCount_ =
        new StatTile(tr("Local snapshots"), "clock.arrow.circlepath", Style::Tint::warning,
                     tr("Time Machine copies kept on this disk."));
    measured_ = new StatTile(tr("Measured here"), "gearshape.2.fill", Style::Tint::secondary,
                             tr("Sum of the components below."));
    row->addWidget(purgeable_);
    row->addWidget(snapshotCount_);
    row->addWidget(measured_);
    return tileRow_;
}

void SystemDataView::showTiles() {
    const std::optional<VolumeInfo>& volume = state_.volume();
    tileRow_->setVisible(volume.has_value());
    if (!volume) {
        return;
    }
    // Linux purges nothing on demand: a volume that reports no difference has nothing to say.
    purgeable_->setVisible(volume->availableForImportantUsage != volume->available);
    purgeable_->setValue(qtText(TextForms::size(volume->purgeable())));
    const SystemDataState& systemData = state_.systemData();
    // Before the first figures are in, there is nothing to count yet.
    const bool unknown = systemData.isLoading() && systemData.parts().empty();
    const QString none = QStringLiteral("\u2014");
    snapshotCount_->setValue(
        unknown ? none
                : qtText(TextForms::count(static_cast<int64_t>(systemData.snapshots().size()))));
    measured_->setValue(unknown ? none : qtText(TextForms::size(systemData.measuredSize())));
}

QWidget* SystemDataView::makeComponents() {
    QFrame* frame = card();
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(Style::cardPadding, Style::smallGap, Style::cardPadding,
                               Style::smallGap);
    spinner_ = new ScanningRing(28);
    layout->addWidget(spinner_, 0, Qt::AlignHCenter);
    componentList_ = new QVBoxLayout;
    componentList_->setSpacing(0);
    layout->addLayout(componentList_);
    return frame;
}

void SystemDataView::showComponents() {
    const SystemDataState& systemData = state_.systemData();
    spinner_->setVisible(systemData.isLoading());
    clear(componentList_);
    componentRows_.clear();
    if (systemData.isLoading()) {
        return;
    }
    const int64_t sum = systemData.measuredSize();
    for (const SystemDataPart& part : systemData.parts()) {
        if (!componentRows_.empty()) {
            componentList_->addWidget(new Divider);
        }
        auto* row = new SystemDataRow(
            part, sum, [this](const std::string& path) { revealPaths(state_, {path}); });
        componentList_->addWidget(row);
        componentRows_.push_back(row);
    }
}

QWidget* SystemDataView::makeSnapshots() {
    QFrame* frame = card();
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(Style::cardPadding, Style::cardPadding, Style::cardPadding,
                               Style::cardPadding);
    layout->setSpacing(Style::gap);
    QLabel* explanation = Style::label(
        tr("macOS keeps hourly snapshots on your disk while your backup drive is away and "
           "removes them automatically when space is needed or after 24 hours. Deleting one by "
           "hand frees its space right away; your backups on the external drive are not "
           "affected."),
        Style::TextRole::secondary);
    explanation->setWordWrap(true);
    layout->addWidget(explanation);
    snapshotMessage_ = Style::label({}, Style::TextRole::caption);
    snapshotMessage_->setWordWrap(true);
    layout->addWidget(snapshotMessage_);
    noSnapshots_ = Style::label(tr("No local snapshots on this disk."), Style::TextRole::body);
    layout->addWidget(noSnapshots_);
    snapshotList_ = new QVBoxLayout;
    snapshotList_->setSpacing(Style::smallGap);
    layout->addLayout(snapshotList_);
    return frame;
}

void SystemDataView::showSnapshotMessage() {
    const std::optional<std::string>& message = state_.systemData().snapshotMessage();
    snapshotMessage_->setVisible(message.has_value());
    snapshotMessage_->setText(message ? shownText(*message) : QString());
    // The application's style sheet colours every caption; only the label's own sheet wins.
    snapshotMessage_->setStyleSheet(
        QStringLiteral("color: %1;").arg(Style::warning(palette()).name()));
}

void SystemDataView::showSnapshots() {
    const SystemDataState& systemData = state_.systemData();
    clear(snapshotList_);
    deleteButtons_.clear();
    noSnapshots_->setVisible(!systemData.isLoading() && systemData.snapshots().empty());
    if (systemData.isLoading()) {
        return;
    }
    for (const LocalSnapshot& snapshot : systemData.snapshots()) {
        auto* row = new QWidget;
        auto* layout = new QHBoxLayout(row);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(Style::gap);
        layout->addWidget(new SymbolView("clock.arrow.circlepath", Style::smallIcon));
        layout->addWidget(Style::label(nameText(snapshotTitle(snapshot)), Style::TextRole::body),
                          1);
        auto* remove = new QPushButton(tr("Delete…"));
        Style::setDestructive(remove);
        remove->setEnabled(!systemData.isDeleting());
        // The administrator's password prompt is the confirmation.
        connect(remove, &QPushButton::clicked, this,
                [this, snapshot] { state_.systemData().deleteSnapshot(snapshot); });
        layout->addWidget(remove);
        snapshotList_->addWidget(row);
        deleteButtons_.push_back(remove);
    }
}

} // namespace dorvik
