#include "ui/pages/PendingPage.h"

#include "state/AppState.h"
#include "ui/Style.h"
#include "ui/shell/ScanPrompt.h"
#include "ui/shell/ScanToolbar.h"
#include "ui/widgets/PageHeader.h"

#include <QLabel>
#include <QStackedLayout>
#include <QVBoxLayout>

namespace dorvik {

PendingPage::PendingPage(AppState& state, const PendingPageTexts& texts, QWidget* parent)
    : Page(QString::fromUtf8(texts.title), QString::fromUtf8(texts.subtitle), parent),
      state_(state) {
    if (texts.promptTitle == nullptr) {
        body()->addWidget(makeNote(), 1);
        return;
    }
    header()->addTrailing(new ScanToolbar(state));
    stack_ = new QStackedLayout;
    stack_->addWidget(new ScanPrompt(state, QString::fromUtf8(texts.promptTitle),
                                     QString::fromUtf8(texts.promptMessage)));
    stack_->addWidget(makeNote());
    body()->addLayout(stack_, 1);
    auto follow = [this] { stack_->setCurrentIndex(state_.scan() ? 1 : 0); };
    connect(&state, &AppState::scanChanged, this, follow);
    follow();
}

bool PendingPage::showsScanPrompt() const {
    return stack_ != nullptr && stack_->currentIndex() == 0;
}

QWidget* PendingPage::makeNote() {
    auto* note = Style::label(tr("This page comes in a later version of Dorvik."),
                              Style::TextRole::tertiary);
    note->setAlignment(Qt::AlignCenter);
    return note;
}

} // namespace dorvik
