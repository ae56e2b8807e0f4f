#include "ui/pages/cloud/CloudFolderRow.h"

#include "base/TextForms.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/widgets/SymbolView.h"
#include "ui/widgets/TagLabel.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace dorvik {

namespace {

QLabel* sizeLabel(int64_t size) {
    QLabel* label = Style::label(qtText(TextForms::size(size)), Style::TextRole::secondary);
    QFont digits = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    digits.setPointSizeF(label->font().pointSizeF());
    label->setFont(digits);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return label;
}

std::vector<std::string> uploadedPaths(const CloudFolder& folder) {
    std::vector<std::string> paths;
    for (const CloudItem& item : folder.items) {
        if (item.isUploaded) {
            paths.push_back(item.path);
        }
    }
    return paths;
}

} // namespace

CloudFolderRow::CloudFolderRow(const CloudFolder& folder, const std::set<std::string>& selected,
                               bool expanded, CloudFolderActions actions, QWidget* parent)
    : QWidget(parent), actions_(std::move(actions)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeHead(folder, selected, expanded));
    if (!expanded) {
        return;
    }
    const size_t shown = std::min(folder.items.size(), cloudRowsShown);
    for (size_t index = 0; index < shown; ++index) {
        const CloudItem& item = folder.items[index];
        column->addWidget(makeItem(item, selected.contains(item.path)));
    }
    if (folder.items.size() > shown) {
        QLabel* more = Style::label(
            tr("… and %1 more")
                .arg(qtText(TextForms::count(static_cast<int64_t>(folder.items.size() - shown)))),
            Style::TextRole::tertiary);
        more->setContentsMargins(60, Style::smallGap, 0, Style::smallGap);
        column->addWidget(more);
    }
}

QWidget* CloudFolderRow::makeHead(const CloudFolder& folder, const std::set<std::string>& selected,
                                  bool expanded) {
    auto* head = new QWidget;
    auto* row = new QHBoxLayout(head);
    row->setContentsMargins(0, Style::gap, 0, Style::gap);
    row->setSpacing(Style::gap);

    chevron_ = new QToolButton;
    chevron_->setAutoRaise(true);
    chevron_->setIcon(Symbols::icon(expanded ? "chevron.down" : "chevron.compact.right",
                                    Style::secondaryText(palette())));
    chevron_->setAccessibleName(expanded ? tr("Collapse") : tr("Expand"));
    chevron_->setToolTip(chevron_->accessibleName());
    connect(chevron_, &QToolButton::clicked, this, [this] { actions_.toggleExpanded(); });
    row->addWidget(chevron_);

    const std::vector<std::string> paths = uploadedPaths(folder);
    const auto chosen = std::ranges::count_if(
        paths, [&selected](const std::string& path) { return selected.contains(path); });
    const bool whole = !paths.empty() && chosen == static_cast<long>(paths.size());
    folderCheck_ = new QCheckBox;
    folderCheck_->setEnabled(!paths.empty());
    if (chosen > 0 && !whole) {
        folderCheck_->setCheckState(Qt::PartiallyChecked);
        auto* faded = new QGraphicsOpacityEffect(folderCheck_);
        faded->setOpacity(0.6);
        folderCheck_->setGraphicsEffect(faded);
    } else {
        folderCheck_->setChecked(whole);
    }
    connect(folderCheck_, &QCheckBox::clicked, this,
            [this, paths, whole] { actions_.select(paths, !whole); });
    row->addWidget(folderCheck_);

    auto* symbol = new SymbolView(folder.isApp ? "app.badge.fill" : "folder.fill", 22);
    symbol->setTint(Style::Tint::accent);
    row->addWidget(symbol);

    auto* names = new QVBoxLayout;
    names->setSpacing(2);
    names->addWidget(Style::label(nameText(folder.title), Style::TextRole::body));
    QString second = tr("%1 downloaded files").arg(folder.items.size());
    if (folder.cloudOnlySize >= 1) {
        second = tr("%1 downloaded files · %2 more only in iCloud")
                     .arg(folder.items.size())
                     .arg(qtText(TextForms::size(folder.cloudOnlySize)));
    }
    names->addWidget(Style::label(second, Style::TextRole::tertiary));
    row->addLayout(names, 1);
    row->addWidget(sizeLabel(folder.localSize));
    return head;
}

QWidget* CloudFolderRow::makeItem(const CloudItem& item, bool selected) {
    auto* line = new QWidget;
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(60, 2, 0, 2);
    row->setSpacing(Style::gap);
    auto* check = new QCheckBox;
    check->setChecked(selected);
    check->setEnabled(item.isUploaded);
    connect(check, &QCheckBox::clicked, this,
            [this, path = item.path](bool on) { actions_.select({path}, on); });
    row->addWidget(check);
    itemChecks_.push_back(check);
    row->addWidget(Style::label(nameText(item.name), Style::TextRole::body), 1);
    if (!item.isUploaded) {
        auto* tag = new TagLabel(tr("Still uploading"), Style::Tint::warning);
        tag->setToolTip(tr("Its download can be removed once iCloud has the whole file."));
        row->addWidget(tag);
    }
    row->addWidget(sizeLabel(item.size));
    line->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(line, &QWidget::customContextMenuRequested, this,
            [this, line, path = item.path](const QPoint& at) {
                QMenu menu;
                menu.addAction(shownText("Show in Finder"), this,
                               [this, path] { actions_.reveal(path); });
                menu.exec(line->mapToGlobal(at));
            });
    return line;
}

} // namespace dorvik
