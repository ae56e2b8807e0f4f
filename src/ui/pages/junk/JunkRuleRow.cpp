#include "ui/pages/junk/JunkRuleRow.h"

#include "base/PathNames.h"
#include "base/TextForms.h"
#include "scanning/ScanPaths.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/files/NodeActions.h"
#include "ui/pages/junk/JunkGroupCard.h"
#include "ui/widgets/ElidedLabel.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace dorvik {

namespace {

// The items' rows stand in from the rule's checkbox, under the rule's title.
constexpr int itemIndent = 28;

QString outcomeText(Removal removal) {
    return removal == Removal::trash ? QObject::tr("Moved to Trash")
                                     : QObject::tr("Deleted immediately");
}

QLabel* sizeLabel(int64_t bytes, Style::TextRole role) {
    auto* size = Style::label(qtText(TextForms::size(bytes)), role);
    size->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return size;
}

} // namespace

JunkRuleRow::JunkRuleRow(AppState& state, JunkFinding finding, QWidget* parent)
    : QFrame(parent), state_(state), finding_(std::move(finding)), ruleCheck_(new QCheckBox),
      expand_(new QPushButton(tr("Expand"))), items_(new QWidget), itemRows_(new QVBoxLayout) {
    const auto count = static_cast<int64_t>(finding_.items.size());
    ruleCheck_->setToolTip(shownText(finding_.rule.title));
    connect(ruleCheck_, &QCheckBox::clicked, this, [this](bool checked) {
        if (!onSelect) {
            return;
        }
        std::vector<std::string> ids;
        for (const JunkItem& item : finding_.items) {
            ids.push_back(item.id);
        }
        onSelect(ids, checked);
    });
    connect(expand_, &QPushButton::clicked, this, [this] {
        setExpanded(!isExpanded());
        if (onExpand) {
            onExpand(isExpanded());
        }
    });

    QVBoxLayout* texts = makeJunkRuleTexts(finding_.rule);

    auto* figures = new QVBoxLayout;
    figures->setSpacing(2);
    figures->addWidget(sizeLabel(totalSize(finding_), Style::TextRole::headline));
    auto* facts = Style::label(tr("%1 items").arg(qtText(TextForms::count(count))) +
                                   QStringLiteral(" · ") + outcomeText(finding_.rule.removal),
                               Style::TextRole::caption);
    facts->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    figures->addWidget(facts);

    auto* head = new QHBoxLayout;
    head->setSpacing(Style::gap + 4);
    head->addWidget(ruleCheck_, 0, Qt::AlignTop);
    head->addLayout(texts, 1);
    head->addLayout(figures);
    head->addWidget(expand_, 0, Qt::AlignVCenter);

    itemRows_->setContentsMargins(itemIndent, 0, 0, 0);
    itemRows_->setSpacing(0);
    items_->setLayout(itemRows_);
    items_->hide();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, Style::gap, 0, Style::gap);
    layout->setSpacing(Style::gap);
    layout->addLayout(head);
    layout->addWidget(items_);
}

bool JunkRuleRow::isExpanded() const {
    return !items_->isHidden();
}

void JunkRuleRow::setExpanded(bool expanded) {
    if (expanded && itemChecks_.empty()) {
        fillItems();
    }
    items_->setVisible(expanded);
    expand_->setText(expanded ? tr("Collapse") : tr("Expand"));
}

void JunkRuleRow::fillItems() {
    const size_t shown = std::min(finding_.items.size(), shownItemsPerRule);
    for (size_t index = 0; index < shown; ++index) {
        itemRows_->addWidget(makeItemRow(finding_.items[index]));
    }
    if (finding_.items.size() > shown) {
        const auto more = static_cast<int64_t>(finding_.items.size() - shown);
        auto* line = Style::label(tr("%1 more").arg(qtText(TextForms::count(more))),
                                  Style::TextRole::tertiary);
        line->setContentsMargins(0, Style::smallGap, 0, 0);
        itemRows_->addWidget(line);
    }
    showSelection(shownSelection_);
}

QWidget* JunkRuleRow::makeItemRow(const JunkItem& item) {
    auto* row = new QWidget;
    auto* check = new QCheckBox;
    itemChecks_.push_back(check);
    connect(check, &QCheckBox::clicked, this, [this, id = item.id](bool checked) {
        if (onSelect) {
            onSelect({id}, checked);
        }
    });
    auto* name = new ElidedLabel;
    name->setText(nameText(pathName(item.id)));
    row->setToolTip(nameText(displayPath(item.id)));

    row->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(row, &QWidget::customContextMenuRequested, this,
            [this, row, path = item.url](const QPoint& at) {
                auto* menu = new QMenu(row);
                menu->setAttribute(Qt::WA_DeleteOnClose);
                menu->addAction(tr("Show in Finder"),
                                [this, path] { revealPaths(state_, {path}); });
                menu->popup(row->mapToGlobal(at));
            });

    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 3, 0, 3);
    layout->setSpacing(Style::gap);
    layout->addWidget(check);
    layout->addWidget(name, 1);
    layout->addWidget(sizeLabel(item.size, Style::TextRole::secondary));
    return row;
}

void JunkRuleRow::showSelection(const std::set<std::string>& selected) {
    shownSelection_ = selected;
    ruleCheck_->setChecked(std::ranges::all_of(
        finding_.items, [&selected](const JunkItem& item) { return selected.contains(item.id); }));
    for (size_t index = 0; index < itemChecks_.size(); ++index) {
        itemChecks_[index]->setChecked(selected.contains(finding_.items[index].id));
    }
}

} // namespace dorvik
