#include "ui/pages/cloud/CloudView.h"

#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/files/NodeActions.h"
#include "ui/pages/cloud/CloudFolderRow.h"
#include "ui/widgets/CentredColumn.h"
#include "ui/widgets/PageHeader.h"
#include "ui/widgets/ScanningRing.h"
#include "ui/widgets/SelectionBar.h"
#include "ui/widgets/StatTile.h"
#include "ui/widgets/SymbolView.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QShowEvent>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace dorvik {

namespace {

void clear(QVBoxLayout* list) {
    while (QLayoutItem* item = list->takeAt(0)) {
        delete item->widget();
        delete item;
    }
}

// A symbol, a headline and a line under it, in the middle of the page.
QWidget* centredMessage(std::string_view symbol, const QString& title, const QString& note) {
    auto* page = new QWidget;
    auto* column = new CentredColumn(page, 420);
    auto* mark = new SymbolView(symbol, 48);
    mark->setTint(Style::Tint::secondary);
    column->content()->addWidget(mark, 0, Qt::AlignHCenter);
    QLabel* headline = Style::label(title, Style::TextRole::headline);
    headline->setAlignment(Qt::AlignHCenter);
    headline->setWordWrap(true);
    column->content()->addWidget(headline);
    QLabel* detail = Style::label(note, Style::TextRole::secondary);
    detail->setAlignment(Qt::AlignHCenter);
    detail->setWordWrap(true);
    column->content()->addWidget(detail);
    return page;
}

int64_t freeable(const CloudReport& report) {
    int64_t sum = 0;
    for (const CloudFolder& folder : report.folders) {
        for (const CloudItem& item : folder.items) {
            sum += item.isUploaded ? item.size : 0;
        }
    }
    return sum;
}

} // namespace

CloudView::CloudView(AppState& state, QWidget* parent)
    : Page(tr("iCloud Drive"),
           shownText("Files iCloud keeps downloaded on this Mac. Remove the download and they "
                     "stay in iCloud, ready to download again when you open them."),
           parent),
      state_(state) {
    refresh_ = new QPushButton(Symbols::icon("arrow.clockwise"), tr("Refresh"));
    connect(refresh_, &QPushButton::clicked, &state_.cloud(), &CloudState::refresh);
    header()->addTrailing(refresh_);

    panes_ = new QStackedWidget;
    reading_ = new QWidget;
    auto* readingColumn = new CentredColumn(reading_, 300);
    readingColumn->content()->addWidget(new ScanningRing(28), 0, Qt::AlignHCenter);
    QLabel* readingText = Style::label(tr("Reading iCloud Drive…"), Style::TextRole::secondary);
    readingText->setAlignment(Qt::AlignHCenter);
    readingColumn->content()->addWidget(readingText);
    panes_->addWidget(reading_);
    unavailable_ = makeUnavailable();
    panes_->addWidget(unavailable_);
    report_ = makeReport();
    panes_->addWidget(report_);
    body()->addWidget(panes_, 1);

    bar_ = new SelectionBar(tr("Remove Downloads…"));
    bar_->onClear = [this] {
        selected_.clear();
        showFolders();
        showSelection();
    };
    bar_->onAction = [this] { confirmRemoval(); };
    body()->addWidget(bar_);

    // Over everything while the report is read again or downloads are given back.
    overlay_ = new ScanningRing(56, this);
    overlay_->hide();

    connect(&state_.cloud(), &CloudState::changed, this, &CloudView::showReport);
    showReport();
}

QWidget* CloudView::makeUnavailable() {
    return centredMessage(
        "icloud.slash", shownText("iCloud Drive isn\u2019t in use on this Mac"),
        shownText("Turn it on in System Settings \u203a Apple Account \u203a iCloud to see it "
                  "here."));
}

QWidget* CloudView::makeReport() {
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, Style::gap, 0);
    column->setSpacing(Style::sectionGap + 4);

    auto* figures = new QHBoxLayout;
    figures->setSpacing(Style::gap + 4);
    tiles_ = {
        new StatTile(shownText("On this Mac"), "internaldrive.fill", Style::Tint::accent,
                     tr("Downloaded copies taking up disk space")),
        new StatTile(tr("Can be freed"), "arrow.up.to.line.compact", Style::Tint::positive,
                     tr("Already safe in iCloud")),
        new StatTile(tr("Only in iCloud"), "icloud.fill", Style::Tint::secondary,
                     shownText("Takes no space on this Mac")),
    };
    for (StatTile* tile : tiles_) {
        figures->addWidget(tile);
    }
    column->addLayout(figures);

    folderCard_ = new QFrame;
    Style::makeCard(folderCard_);
    folderList_ = new QVBoxLayout(folderCard_);
    folderList_->setContentsMargins(Style::cardPadding, Style::smallGap, Style::cardPadding,
                                    Style::smallGap);
    folderList_->setSpacing(0);
    column->addWidget(folderCard_);
    nothingBig_ = centredMessage("checkmark.icloud", tr("Nothing big is downloaded"),
                                 shownText("iCloud Drive is using very little space on this Mac."));
    column->addWidget(nothingBig_);
    column->addStretch(1);

    auto* scroll = new QScrollArea;
    scroll->setProperty("page", true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(content);
    return scroll;
}

void CloudView::showEvent(QShowEvent* event) {
    Page::showEvent(event);
    if (!state_.cloud().report()) {
        state_.cloud().refresh();
    }
}

void CloudView::resizeEvent(QResizeEvent* event) {
    Page::resizeEvent(event);
    const QSize size = overlay_->sizeHint();
    overlay_->setGeometry(
        QRect(QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size));
}

QWidget* CloudView::shownPane() const {
    return panes_->currentWidget();
}

void CloudView::showReport() {
    const CloudState& cloud = state_.cloud();
    refresh_->setEnabled(!cloud.isLoading());
    const std::optional<CloudReport>& report = cloud.report();
    // What is no longer in the report can no longer be selected.
    std::set<std::string> present;
    if (report) {
        for (const CloudFolder& folder : report->folders) {
            for (const CloudItem& item : folder.items) {
                present.insert(item.path);
            }
        }
    }
    std::erase_if(selected_,
                  [&present](const std::string& path) { return !present.contains(path); });

    panes_->setCurrentWidget(!report ? reading_ : report->isAvailable ? report_ : unavailable_);
    overlay_->setVisible(report && cloud.isLoading());
    overlay_->raise();
    if (report && report->isAvailable) {
        int64_t local = 0;
        int64_t cloudOnly = 0;
        for (const CloudFolder& folder : report->folders) {
            local += folder.localSize;
            cloudOnly += folder.cloudOnlySize;
        }
        tiles_[0]->setValue(qtText(TextForms::size(local)));
        tiles_[1]->setValue(qtText(TextForms::size(freeable(*report))));
        tiles_[2]->setValue(qtText(TextForms::size(cloudOnly)));
    }
    showFolders();
    showSelection();
}

void CloudView::showFolders() {
    clear(folderList_);
    folderRows_.clear();
    const std::optional<CloudReport>& report = state_.cloud().report();
    if (!report) {
        return;
    }
    for (const CloudFolder& folder : report->folders) {
        // Folders without a download worth a row count in the figures only.
        if (folder.items.empty()) {
            continue;
        }
        const std::string path = folder.path;
        CloudFolderActions actions{
            [this, path] {
                if (!expanded_.erase(path)) {
                    expanded_.insert(path);
                }
                showFolders();
            },
            [this](const std::vector<std::string>& paths, bool on) { select(paths, on); },
            [this](const std::string& item) { revealPaths(state_, {item}); },
        };
        auto* row =
            new CloudFolderRow(folder, selected_, expanded_.contains(path), std::move(actions));
        folderList_->addWidget(row);
        folderRows_.push_back(row);
    }
    folderCard_->setVisible(!folderRows_.empty());
    nothingBig_->setVisible(folderRows_.empty());
}

void CloudView::select(const std::vector<std::string>& paths, bool on) {
    for (const std::string& path : paths) {
        if (on) {
            selected_.insert(path);
        } else {
            selected_.erase(path);
        }
    }
    // Rebuilt after the click that called here has been handled.
    QMetaObject::invokeMethod(
        this,
        [this] {
            showFolders();
            showSelection();
        },
        Qt::QueuedConnection);
}

std::vector<CloudItem> CloudView::selectedItems() const {
    std::vector<CloudItem> items;
    if (const auto& report = state_.cloud().report()) {
        for (const CloudFolder& folder : report->folders) {
            for (const CloudItem& item : folder.items) {
                if (selected_.contains(item.path)) {
                    items.push_back(item);
                }
            }
        }
    }
    return items;
}

void CloudView::showSelection() {
    int64_t size = 0;
    const std::vector<CloudItem> items = selectedItems();
    for (const CloudItem& item : items) {
        size += item.size;
    }
    bar_->setSelection(static_cast<int64_t>(items.size()), size);
}

void CloudView::confirmRemoval() {
    const std::vector<CloudItem> items = selectedItems();
    if (items.empty()) {
        return;
    }
    confirmation_ = new QMessageBox(this);
    confirmation_->setAttribute(Qt::WA_DeleteOnClose);
    confirmation_->setWindowModality(Qt::WindowModal);
    confirmation_->setIcon(QMessageBox::Question);
    confirmation_->setText(tr("Remove the downloads of %1 files?").arg(items.size()));
    confirmation_->setInformativeText(
        tr("Nothing is deleted: the files stay in iCloud and on your other devices, and "
           "download again when you open them. You’ll need an internet connection to open "
           "them."));
    QPushButton* remove =
        confirmation_->addButton(tr("Remove Downloads"), QMessageBox::DestructiveRole);
    confirmation_->addButton(tr("Cancel"), QMessageBox::RejectRole);
    confirmation_->setDefaultButton(remove);
    connect(confirmation_, &QMessageBox::buttonClicked, this,
            [this, remove, items](QAbstractButton* pressed) {
                confirmation_ = nullptr;
                if (pressed != remove) {
                    return;
                }
                selected_.clear();
                state_.cloud().removeDownloads(items);
                showSelection();
            });
    confirmation_->open();
}

} // namespace dorvik
