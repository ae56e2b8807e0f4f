#include "ui/pages/ScanPage.h"

#include "state/AppState.h"
#include "ui/shell/ScanPrompt.h"
#include "ui/shell/ScanToolbar.h"
#include "ui/widgets/PageHeader.h"

#include <QStackedLayout>
#include <QVBoxLayout>

namespace dorvik {

ScanPage::ScanPage(AppState& state, const QString& title, const QString& subtitle,
                   const QString& promptTitle, const QString& promptMessage, QWidget* parent)
    : Page(title, subtitle, parent), state_(state), stack_(new QStackedLayout) {
    header()->addTrailing(new ScanToolbar(state));
    stack_->addWidget(new ScanPrompt(state, promptTitle, promptMessage));
    body()->addLayout(stack_, 1);
    connect(&state, &AppState::scanChanged, this,
            [this] { stack_->setCurrentIndex(state_.scan() && stack_->count() > 1 ? 1 : 0); });
}

void ScanPage::setContent(QWidget* content) {
    stack_->addWidget(content);
    stack_->setCurrentIndex(state_.scan() ? 1 : 0);
}

bool ScanPage::showsScanPrompt() const {
    return stack_->currentIndex() == 0;
}

} // namespace dorvik
