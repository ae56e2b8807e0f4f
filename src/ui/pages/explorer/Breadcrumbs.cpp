#include "ui/pages/explorer/Breadcrumbs.h"

#include "state/AppState.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/files/NodeActions.h"
#include "ui/files/NodeTitle.h"
#include "ui/widgets/SymbolView.h"

#include <QHBoxLayout>
#include <QToolButton>

namespace dorvik {

Breadcrumbs::Breadcrumbs(AppState& state, QWidget* parent)
    : QWidget(parent), state_(state), back_(new QToolButton), reveal_(new QToolButton),
      trail_(new QHBoxLayout) {
    back_->setIcon(Symbols::icon("chevron.left"));
    back_->setToolTip(tr("Back"));
    back_->setAutoRaise(true);
    connect(back_, &QToolButton::clicked, this, [this] {
        std::vector<FileNodePtr> stack = state_.explorerStack();
        if (stack.size() > 1) {
            stack.pop_back();
            state_.setExplorerStack(std::move(stack));
        }
    });
    reveal_->setIcon(Symbols::icon("arrow.up.forward.app"));
    reveal_->setToolTip(tr("Show in Finder"));
    reveal_->setAutoRaise(true);
    connect(reveal_, &QToolButton::clicked, this, [this] {
        if (!state_.explorerStack().empty()) {
            revealPaths(state_, {state_.explorerStack().back()->path()});
        }
    });

    trail_->setContentsMargins(0, 0, 0, 0);
    trail_->setSpacing(2);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::gap);
    layout->addWidget(back_);
    layout->addLayout(trail_, 1);
    layout->addWidget(reveal_);
    connect(&state, &AppState::explorerStackChanged, this, &Breadcrumbs::rebuild);
    rebuild();
}

void Breadcrumbs::rebuild() {
    // Later: the crumb that was pressed is still in its click.
    while (QLayoutItem* item = trail_->takeAt(0)) {
        if (QWidget* widget = item->widget()) {
            widget->hide();
            widget->deleteLater();
        }
        delete item;
    }
    crumbs_.clear();
    const std::vector<FileNodePtr>& stack = state_.explorerStack();
    back_->setEnabled(stack.size() > 1);
    reveal_->setEnabled(!stack.empty());
    for (size_t depth = 0; depth < stack.size(); ++depth) {
        if (depth > 0) {
            trail_->addWidget(new SymbolView("chevron.compact.right", 12));
        }
        auto* crumb = new QToolButton;
        crumb->setText(nodeTitle(*stack[depth]));
        crumb->setAutoRaise(true);
        if (depth + 1 == stack.size()) {
            QFont bold = crumb->font();
            bold.setWeight(QFont::DemiBold);
            crumb->setFont(bold);
        }
        connect(crumb, &QToolButton::clicked, this, [this, depth] {
            std::vector<FileNodePtr> upTo = state_.explorerStack();
            if (depth + 1 < upTo.size()) {
                upTo.resize(depth + 1);
                state_.setExplorerStack(std::move(upTo));
            }
        });
        trail_->addWidget(crumb);
        crumbs_.append(crumb);
    }
    trail_->addStretch();
}

} // namespace dorvik
