#include "ui/pages/PendingPage.h"

#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/pages/ScanPage.h"

#include <QLabel>
#include <QVBoxLayout>

namespace dorvik {

namespace {

QLabel* makeNote() {
    auto* note = Style::label(QObject::tr("This page comes in a later version of Dorvik."),
                              Style::TextRole::tertiary);
    note->setAlignment(Qt::AlignCenter);
    return note;
}

} // namespace

Page* makePendingPage(AppState& state, const PendingPageTexts& texts) {
    const QString title = shownText(texts.title);
    const QString subtitle = shownText(texts.subtitle);
    if (texts.promptTitle == nullptr) {
        auto* page = new Page(title, subtitle);
        page->body()->addWidget(makeNote(), 1);
        return page;
    }
    auto* page = new ScanPage(state, title, subtitle, shownText(texts.promptTitle),
                              shownText(texts.promptMessage));
    page->setContent(makeNote());
    return page;
}

} // namespace dorvik
