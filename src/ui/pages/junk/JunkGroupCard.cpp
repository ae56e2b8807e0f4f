#include "ui/pages/junk/JunkGroupCard.h"

#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/widgets/SymbolView.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <optional>

namespace dorvik {

namespace {

QVBoxLayout* addJunkGroupCard(QVBoxLayout* list, JunkGroup group) {
    auto* heading = new QWidget;
    auto* symbol = new SymbolView(info(group).symbol, Style::smallIcon);
    symbol->setTint(Style::Tint::accent);
    auto* headingLayout = new QHBoxLayout(heading);
    headingLayout->setContentsMargins(0, 0, 0, 0);
    headingLayout->setSpacing(Style::gap);
    headingLayout->addWidget(symbol);
    headingLayout->addWidget(Style::label(shownText(info(group).title), Style::TextRole::headline),
                             1);

    auto* card = new QFrame;
    Style::makeCard(card);
    auto* rules = new QVBoxLayout(card);
    rules->setContentsMargins(Style::cardPadding, Style::smallGap, Style::cardPadding,
                              Style::smallGap);
    rules->setSpacing(0);

    auto* section = new QWidget;
    auto* sectionLayout = new QVBoxLayout(section);
    sectionLayout->setContentsMargins(0, 0, 0, 0);
    sectionLayout->setSpacing(Style::gap);
    sectionLayout->addWidget(heading);
    sectionLayout->addWidget(card);
    list->addWidget(section);
    return rules;
}

QWidget* makeJunkRuleSeparator() {
    auto* line = new QFrame;
    line->setProperty("separator", true);
    line->setFixedHeight(1);
    return line;
}

} // namespace

void fillJunkGroupCards(QVBoxLayout* list, const std::vector<JunkFinding>& findings,
                        const std::function<void(const JunkFinding&, QVBoxLayout* card)>& addRule) {
    while (QLayoutItem* item = list->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    std::optional<JunkGroup> group;
    QVBoxLayout* card = nullptr;
    for (const JunkFinding& finding : sortedByGroup(findings)) {
        if (finding.rule.group != group) {
            group = finding.rule.group;
            card = addJunkGroupCard(list, *group);
        } else {
            card->addWidget(makeJunkRuleSeparator());
        }
        addRule(finding, card);
    }
    list->addStretch();
}

QVBoxLayout* makeJunkRuleTexts(const JunkRule& rule) {
    auto* explanation = Style::label(shownText(rule.explanation), Style::TextRole::secondary);
    explanation->setWordWrap(true);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(Style::label(shownText(rule.title), Style::TextRole::headline));
    texts->addWidget(explanation);
    return texts;
}

} // namespace dorvik
