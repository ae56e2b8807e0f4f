#include "ui/pages/quickclean/ReviewStage.h"

#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/pages/junk/JunkGroupCard.h"
#include "ui/widgets/CentredColumn.h"
#include "ui/widgets/SymbolView.h"

#include <QCheckBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <optional>

namespace dorvik {

namespace {

constexpr int listWidth = 680;
constexpr int cleanColumnWidth = 420;

QWidget* makeRuleRow(const JunkFinding& finding, QCheckBox* check) {
    auto* row = new QWidget;
    QVBoxLayout* texts = makeJunkRuleTexts(finding.rule);
    auto* size =
        Style::label(qtText(TextForms::size(totalSize(finding))), Style::TextRole::headline);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, Style::gap, 0, Style::gap);
    layout->setSpacing(Style::gap + 4);
    layout->addWidget(check, 0, Qt::AlignTop);
    layout->addLayout(texts, 1);
    layout->addWidget(size, 0, Qt::AlignTop);
    return row;
}

} // namespace

ReviewStage::ReviewStage(AppState& state, QWidget* parent)
    : QWidget(parent), state_(state), stack_(new QStackedLayout(this)), nothingFound_(new QWidget),
      found_(new QWidget), groups_(new QVBoxLayout),
      sum_(Style::label({}, Style::TextRole::pageTitle)), clean_(new QPushButton) {
    // Nothing found: a calm word and the way back.
    auto* column = new CentredColumn(nothingFound_, cleanColumnWidth);
    auto* symbol = new SymbolView("checkmark.circle.fill", Style::badgeIcon);
    symbol->setTint(Style::Tint::positive);
    column->content()->setSpacing(Style::sectionGap);
    column->content()->addWidget(symbol, 0, Qt::AlignHCenter);
    auto* clean = Style::label(tr("Your Mac is clean. No junk found."), Style::TextRole::headline);
    clean->setAlignment(Qt::AlignCenter);
    clean->setWordWrap(true);
    column->content()->addWidget(clean);
    auto* startOverWhenClean = new QPushButton(tr("Start Over"));
    connect(startOverWhenClean, &QPushButton::clicked, this,
            [this] { state_.quickClean().startOver(); });
    column->content()->addWidget(startOverWhenClean, 0, Qt::AlignHCenter);

    // Something found: the sum, the rules by group, and the buttons.
    sum_->setAlignment(Qt::AlignCenter);
    auto* list = new QWidget;
    groups_->setContentsMargins(0, 0, Style::gap, 0);
    groups_->setSpacing(Style::sectionGap);
    list->setLayout(groups_);
    // The list and its scroll bar stand together in the middle of the page.
    auto* scroll = new QScrollArea;
    scroll->setProperty("page", true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setMaximumWidth(listWidth);
    scroll->setWidget(list);
    auto* centring = new QHBoxLayout;
    centring->addWidget(scroll);

    Style::setProminent(clean_, true);
    connect(clean_, &QPushButton::clicked, this, [this] { state_.quickClean().clean(); });
    auto* startOver = new QPushButton(tr("Start Over"));
    connect(startOver, &QPushButton::clicked, this, [this] { state_.quickClean().startOver(); });
    auto* details = new QPushButton(tr("See Details"));
    connect(details, &QPushButton::clicked, this, [this] { state_.quickClean().seeDetails(); });
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(Style::gap);
    buttons->addStretch();
    buttons->addWidget(startOver);
    buttons->addWidget(details);
    buttons->addWidget(clean_);
    buttons->addStretch();

    auto* foundLayout = new QVBoxLayout(found_);
    foundLayout->setContentsMargins(0, 0, 0, 0);
    foundLayout->setSpacing(Style::sectionGap);
    foundLayout->addWidget(sum_);
    foundLayout->addLayout(centring, 1);
    foundLayout->addLayout(buttons);

    stack_->addWidget(nothingFound_);
    stack_->addWidget(found_);

    connect(&state_.junk(), &JunkState::findingsChanged, this, &ReviewStage::rebuild);
    connect(&state_.quickClean(), &QuickCleanState::selectionChanged, this,
            &ReviewStage::refreshSelection);
    rebuild();
}

bool ReviewStage::showsClean() const {
    return stack_->currentWidget() == nothingFound_;
}

void ReviewStage::rebuild() {
    checks_.clear();
    fillJunkGroupCards(
        groups_, state_.junk().findings(), [this](const JunkFinding& finding, QVBoxLayout* card) {
            auto* check = new QCheckBox;
            check->setToolTip(shownText(finding.rule.title));
            connect(check, &QCheckBox::clicked, this, [this, id = finding.rule.id](bool checked) {
                state_.quickClean().setRuleSelected(id, checked);
            });
            checks_[finding.rule.id] = check;
            card->addWidget(makeRuleRow(finding, check));
        });
    stack_->setCurrentWidget(state_.junk().findings().empty() ? nothingFound_ : found_);
    refreshSelection();
}

void ReviewStage::refreshSelection() {
    const std::set<std::string>& selection = state_.quickClean().selection();
    for (const auto& [id, check] : checks_) {
        check->setChecked(selection.contains(id));
    }
    const QString sum = qtText(TextForms::size(state_.quickClean().selectedTotal()));
    sum_->setText(sum + tr(" ready to clean"));
    clean_->setText(tr("Clean ") + sum);
}

} // namespace dorvik
